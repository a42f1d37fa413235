#include "CSingleLock.h"

#include "CException.h"

CSyncObject::~CSyncObject() = default;

CCriticalSection::CCriticalSection() {
    if (!InitializeCriticalSectionAndSpinCount(&m_Section, 0)) AfxThrowMemoryException();
}

CCriticalSection::~CCriticalSection() {
    DeleteCriticalSection(&m_Section);
}

BOOL CCriticalSection::Lock(DWORD) {
    EnterCriticalSection(&m_Section);
    return TRUE;
}

BOOL CCriticalSection::Unlock() {
    LeaveCriticalSection(&m_Section);
    return TRUE;
}
