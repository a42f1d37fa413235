// The words of the command line, as texts.
#pragma once

#include "../frame/export.h"
#include "../platform/mfc/CCommandLineInfo.h"
#include "../platform/mfc/CStringArray.h"

// Adds the words that CWinApp::ParseCommandLine hands it to an array of the caller's, behind what
// is there: a switch with "-" in front, whichever character made it one, any other word as it is.
//
//     CStringArray words;
//     RVCmdLineInfo info(words);
//     application.ParseCommandLine(info);
//
// The array lives at least as long as the object. The fields of the base class keep the values that
// they begin with. Without memory a word throws CMemoryException*, and the array is as it was.
class RVUTILS_API RVCmdLineInfo : public CCommandLineInfo {
public:
    // Words are added behind those that `words` has already.
    explicit RVCmdLineInfo(CStringArray& words);
    ~RVCmdLineInfo() override;

    void ParseParam(const char* word, BOOL flag, BOOL last) override;

private:
    CStringArray& m_Words;
};
