#include "CWinApp.h"

#include <utility>

#include "CCommandLineInfo.h"
#include "CException.h"

namespace {

CWinApp* g_Newest = nullptr;

void Show(const CException* exception) {
    char text[256];
    const bool has_text = exception && exception->GetErrorMessage(text, sizeof text);
    AfxMessageBox(has_text ? text : "The operation failed.");
}

}  // namespace

CWinApp::CWinApp() noexcept : m_Before(std::exchange(g_Newest, this)) {}

CWinApp::~CWinApp() {
    CWinApp** at = &g_Newest;
    while (*at != this)
        at = &(*at)->m_Before;
    *at = m_Before;
}

void CWinApp::ParseCommandLine(CCommandLineInfo& info) {
    for (int at = 1; at < __argc; ++at) {
        const char* const word = __argv[at];
        const bool flag = *word == '-' || *word == '/';
        info.ParseParam(flag ? word + 1 : word, flag, at + 1 == __argc);
    }
}

void CWinApp::DoWaitCursor(int code) {
    const int before = m_WaitCount;
    m_WaitCount = before + code > 0 ? before + code : 0;
    if (m_WaitCount > 0) {
        HCURSOR const cursor = SetCursor(LoadCursorA(nullptr, IDC_WAIT));
        if (before == 0) m_CursorBefore = cursor;
    } else if (before > 0) {
        SetCursor(m_CursorBefore);
    }
}

int CWinApp::DoMessageBox(const char* text, UINT kind, UINT) {
    return MessageBoxA(nullptr, text, m_pszAppName ? m_pszAppName : "Message", kind);
}

void CWinApp::ProcessWndProcException(CException* exception) {
    Show(exception);
}

CWinApp* AfxGetApp() noexcept {
    return g_Newest;
}

int AfxMessageBox(const char* text, UINT kind, UINT help_id) {
    CWinApp* const application = AfxGetApp();
    return application ? application->DoMessageBox(text, kind, help_id)
                       : MessageBoxA(nullptr, text, "Message", kind);
}

void AfxProcessWndProcException(CException* exception) noexcept {
    try {
        CWinApp* const application = AfxGetApp();
        application ? application->ProcessWndProcException(exception) : Show(exception);
    } catch (CException* another) {
        another->Delete();
    } catch (...) {
        // There is nobody left to tell.
    }
}
