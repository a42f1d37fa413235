// The stand-in of RVDev: values of the registry.
#include "../../frame/RVRegTool.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "../../platform/mfc/Allocation.h"

namespace {

// A key that was opened, if it was.
class OpenKey {
public:
    OpenKey() = default;
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    ~OpenKey() {
        if (m_Key) RegCloseKey(m_Key);
    }

    LSTATUS Open(HKEY root, const char* path) noexcept {
        return RegOpenKeyExA(root, path, 0, KEY_QUERY_VALUE, &m_Key);
    }
    // Reads a value of any size.
    LSTATUS Read(const char* name, DWORD& type, rv::HeapText& data, DWORD& size) const {
        LSTATUS status = RegQueryValueExA(m_Key, name, nullptr, &type, nullptr, &size);
        while (status == ERROR_SUCCESS) {
            data.reset(static_cast<char*>(rv::Heap_Allocate(size)));
            if (!data) return ERROR_NOT_ENOUGH_MEMORY;
            auto* const bytes = reinterpret_cast<BYTE*>(data.get());
            status = RegQueryValueExA(m_Key, name, nullptr, &type, bytes, &size);
            // It may have grown since it was asked for its size.
            if (status != ERROR_MORE_DATA) break;
            status = ERROR_SUCCESS;
        }
        return status;
    }

private:
    HKEY m_Key = nullptr;
};

// Whether data of the type is a text.
bool To_Text(DWORD type, const char* data, DWORD size, RVString& text) {
    if (type == REG_SZ || type == REG_EXPAND_SZ) {
        text = CString(data, static_cast<int>(strnlen(data, size)));
        return true;
    }
    ULONG number;
    if (type != REG_DWORD || size != sizeof number) return false;
    std::memcpy(&number, data, sizeof number);
    text.Number_To_String(number);
    return true;
}

}  // namespace

RVRegTool::RVRegTool(const HKEY& root, const RVString& key)
    : m_Text(key),
      m_First(static_cast<ULONG>(reinterpret_cast<std::uintptr_t>(root))),
      m_Second(static_cast<ULONG>(std::uint64_t{reinterpret_cast<std::uintptr_t>(root)} >> 32)) {}

RVRegTool::~RVRegTool() = default;

bool RVRegTool::Get_Value(const RVString& name, const RVString& section, RVString& text, ULONG) {
    const auto root = static_cast<std::uintptr_t>(std::uint64_t{m_Second} << 32 | m_First);
    CString path(m_Text);
    if (!path.IsEmpty() && !section.IsEmpty()) path += '\\';
    path += section;
    const auto length = static_cast<std::size_t>(name.GetLength());
    std::memset(m_Fixed_Text, 0, sizeof m_Fixed_Text);
    std::memcpy(m_Fixed_Text, name.GetString(), std::min(length, sizeof m_Fixed_Text - 1));
    m_Flag = false;

    OpenKey key;
    rv::HeapText data;
    DWORD type = 0, size = 0;
    LSTATUS status = key.Open(reinterpret_cast<HKEY>(root), path);
    if (status == ERROR_SUCCESS) status = key.Read(name, type, data, size);
    m_Third = static_cast<ULONG>(status);
    if (m_Third == ERROR_NOT_ENOUGH_MEMORY) AfxThrowMemoryException();
    m_Flag = status == ERROR_SUCCESS && To_Text(type, data.get(), size, text);
    return m_Flag;
}
