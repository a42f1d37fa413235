// The application.
#pragma once

#include "../export.h"
#include "../winapi.h"
#include "CCmdTarget.h"

class CCommandLineInfo;
class CException;

// The application object. A program has one, mostly with static lifetime, of a class derived from
// this one; while there are several, the newest is the one that counts.
//
// Its operations belong to the thread of the user interface.
class RVPLATFORM_API CWinApp : public CCmdTarget {
public:
    CWinApp() noexcept;
    ~CWinApp() override;

    // Hands the words of the process's command line, behind the name of the program, to
    // ParseParam, in order. A word that begins with "-" or "/" is a switch, on every platform: the
    // same line means the same everywhere. So on Linux an absolute path is given with its drive, as
    // C:/home/me/report.dat, or from the current directory.
    void ParseCommandLine(CCommandLineInfo& info);

    // Begins the wait cursor for 1, ends it for -1, shows it again for 0 while it lasts. It lasts
    // until each beginning has its end; the cursor from before then comes back.
    virtual void DoWaitCursor(int code);
    // Shows a message and waits for the user's answer. `help_id` is for derived applications.
    virtual int DoMessageBox(const char* text, UINT kind, UINT help_id);
    // Called with an exception that has left the answer to a message, whose result then is 0; null
    // for one of another family. Shows its text. The exception is still the caller's.
    virtual void ProcessWndProcException(CException* exception);

    const char* m_pszAppName = nullptr;  // title of messages, with static lifetime

private:
    CWinApp* m_Before;
    int m_WaitCount = 0;
    HCURSOR m_CursorBefore = nullptr;
};

// The application object, or null.
[[nodiscard]] RVPLATFORM_API CWinApp* AfxGetApp() noexcept;

// Shows a message, through the application object where there is one, and gives the user's answer.
RVPLATFORM_API int AfxMessageBox(const char* text, UINT kind = MB_OK, UINT help_id = 0);

// Hands on to ProcessWndProcException; where there is no application object, shows the text.
RVPLATFORM_API void AfxProcessWndProcException(CException* exception) noexcept;
