#include "RVMutex.h"

#include <algorithm>
#include <atomic>
#include <string_view>
#include <utility>

#include "../platform/mfc/HeapObject.h"

namespace {

constexpr int kRoom = 128;  // for the text of a GUID
constexpr std::string_view kSuffix = " : MUTEX";

}  // namespace

// How many objects share the hold.
struct RVMutex::Copies : rv::HeapObject {
    std::atomic<int> objects = 1;
};

RVMutex::RVMutex(const GUID& guid) {
    wchar_t text[kRoom];
    const int size = StringFromGUID2(guid, text, kRoom);
    if (size < 1) return;
    // It has nothing but ASCII, which is quicker narrowed here than by the locale.
    char name[kRoom + kSuffix.size()];
    char* const end = std::transform(text, text + size - 1, name, [](wchar_t character) {
        return static_cast<char>(character);
    });
    m_Name.SetString(name, static_cast<int>(std::ranges::copy(kSuffix, end).out - name));
    m_Handle = CreateMutexA(nullptr, FALSE, m_Name);
    WaitForSingleObject(m_Handle, INFINITE);
}

RVMutex::RVMutex(const RVMutex& other) : m_Name(other.m_Name) {
    if (!other.m_Copies) other.m_Copies = new Copies;
    ++other.m_Copies->objects;
    m_Copies = other.m_Copies;
    m_Handle = other.m_Handle;
}

RVMutex& RVMutex::operator=(const RVMutex& other) {
    RVMutex copy = other;
    std::swap(m_Handle, copy.m_Handle);
    std::swap(m_Name, copy.m_Name);
    std::swap(m_Copies, copy.m_Copies);
    return *this;
}

RVMutex::~RVMutex() {
    if (m_Copies && --m_Copies->objects > 0) return;
    delete m_Copies;
    if (!m_Handle) return;
    ReleaseMutex(m_Handle);
    CloseHandle(m_Handle);
}
