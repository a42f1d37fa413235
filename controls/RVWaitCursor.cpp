#include "RVWaitCursor.h"

#include "../platform/mfc/CException.h"
#include "../platform/mfc/CWinApp.h"

namespace {

constexpr UINT kTextRoom = 512;

void Show(const CException& exception, int line) {
    constexpr char kWhat[] = "Exception thrown in destructor";
    constexpr char kFile[] = "WaitCursor";
    char text[kTextRoom];
    CString message;
    if (exception.GetErrorMessage(text, kTextRoom))
        message.Format("%s (%s:%d)\n%s", kWhat, kFile, line, text);
    else
        message.Format("%s (%s:%d)", kWhat, kFile, line);
    AfxMessageBox(message);
}

// What happens while it is shown ends here, too: a destructor is at work.
void Show_And_Delete(CException* exception, int line) {
    try {
        Show(*exception, line);
    } catch (CException* another) {
        another->Delete();
    }
    exception->Delete();
}

}  // namespace

RVWaitCursor::RVWaitCursor() {
    if (CWinApp* const application = AfxGetApp()) application->BeginWaitCursor();
}

RVWaitCursor::~RVWaitCursor() {
    try {
        if (CWinApp* const application = AfxGetApp()) application->EndWaitCursor();
    } catch (CException* exception) {
        Show_And_Delete(exception, __LINE__);
    }
}

void RVWaitCursor::Restore() {}
