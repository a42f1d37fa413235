#include "CMutex.h"

CMutex::~CMutex() {
    if (m_hObject) CloseHandle(m_hObject);
}

BOOL CMutex::Lock(DWORD timeout) {
    const DWORD outcome = WaitForSingleObject(m_hObject, timeout);
    return outcome == WAIT_OBJECT_0 || outcome == WAIT_ABANDONED;
}

BOOL CMutex::Unlock() {
    return ReleaseMutex(m_hObject);
}
