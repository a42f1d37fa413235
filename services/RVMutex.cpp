#include "RVMutex.h"

#include <utility>

#include "../platform/mfc/Allocation.h"

namespace {

void Give_Back(HANDLE mutex) noexcept {
    if (!mutex) return;
    ReleaseMutex(mutex);
    CloseHandle(mutex);
}

}  // namespace

RVMutex::RVMutex(const GUID& guid) {
    wchar_t text[128];
    if (StringFromGUID2(guid, text, 128) < 1) return;
    m_Name = text;
    m_Name += " : MUTEX";
    HANDLE const mutex = CreateMutexA(nullptr, FALSE, m_Name);
    WaitForSingleObject(mutex, INFINITE);
    m_Handle = std::shared_ptr<void>(mutex, &Give_Back, rv::HeapAllocator<void*>());
}

RVMutex::RVMutex(const RVMutex&) = default;

RVMutex& RVMutex::operator=(const RVMutex& other) {
    CString name = other.m_Name;
    m_Name = std::move(name);
    m_Handle = other.m_Handle;
    return *this;
}

RVMutex::~RVMutex() = default;
