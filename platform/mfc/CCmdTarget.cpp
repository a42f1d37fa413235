#include "CCmdTarget.h"

#include "CWinApp.h"

CCmdTarget::~CCmdTarget() = default;

void CCmdTarget::BeginWaitCursor() {
    if (CWinApp* const application = AfxGetApp()) application->DoWaitCursor(1);
}

void CCmdTarget::EndWaitCursor() {
    if (CWinApp* const application = AfxGetApp()) application->DoWaitCursor(-1);
}

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap() {
    static const AFX_MSGMAP_ENTRY s_Entries[] = {{0, 0, 0, nullptr}};
    static const AFX_MSGMAP s_Map = {nullptr, s_Entries};
    return &s_Map;
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const {
    return GetThisMessageMap();
}
