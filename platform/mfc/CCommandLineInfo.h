// What an application is told on its command line.
#pragma once

#include "../export.h"
#include "../winapi.h"
#include "CObject.h"
#include "CString.h"

// Takes the words of a command line, one by one, and makes out what the application is to begin
// with. Derived classes take them for themselves.
class RVPLATFORM_API CCommandLineInfo : public CObject {
public:
    CCommandLineInfo() = default;
    CCommandLineInfo(const CCommandLineInfo&) = delete;
    CCommandLineInfo& operator=(const CCommandLineInfo&) = delete;
    ~CCommandLineInfo() override;

    // A word; `flag`: it was a switch and comes without its first character. `last`: no other word
    // follows.
    //
    // This one opens the first word that is no switch, and knows no switches.
    virtual void ParseParam(const char* word, BOOL flag, BOOL last);

    enum { FileNew, FileOpen } m_nShellCommand = FileNew;
    CString m_strFileName;  // for FileOpen
};
