// A part of the registry that belongs to a test.
#pragma once

#include <RVUtils/winapi.h>

#include <string>

#include "environment.h"
#include "scratch.h"

namespace rv_test {

// Takes a key away with all below it.
inline void Delete_Tree(HKEY root, const std::string& path) {
    HKEY key;
    if (RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    char name[256];
    for (DWORD length = sizeof name;
         RegEnumKeyExA(key, 0, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         length = sizeof name)
        Delete_Tree(key, name);
    RegCloseKey(key);
    RegDeleteKeyA(root, path.c_str());
}

// While one lives, the registry is a file of its own on Linux. On Windows it is the system's, in
// which the key goes at both ends.
class TestRegistry {
public:
    TestRegistry(HKEY root, const std::string& path) : m_Root(root), m_Path(path) {
        Delete_Tree(m_Root, m_Path);
    }
    TestRegistry(const TestRegistry&) = delete;
    TestRegistry& operator=(const TestRegistry&) = delete;
    ~TestRegistry() { Delete_Tree(m_Root, m_Path); }

    // Of the file.
    std::string Path() const { return m_Scratch / "registry.reg"; }

private:
    ScratchDirectory m_Scratch;
    Environment m_Place{"RVUTILS_REGISTRY", Path()};
    HKEY m_Root;
    std::string m_Path;
};

// An open key.
class TestKey {
public:
    explicit TestKey(HKEY root, const std::string& path, REGSAM access = KEY_ALL_ACCESS) {
        status = RegCreateKeyExA(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access,
                                 nullptr, &handle, &disposition);
    }
    TestKey(const TestKey&) = delete;
    TestKey& operator=(const TestKey&) = delete;
    ~TestKey() {
        if (handle) RegCloseKey(handle);
    }

    LSTATUS Set(const char* name, DWORD type, const std::string& data) const {
        return RegSetValueExA(handle, name, 0, type, reinterpret_cast<const BYTE*>(data.data()),
                              static_cast<DWORD>(data.size()));
    }
    // Type and data, or the status.
    std::string Get(const char* name) const {
        char data[2000];
        DWORD type = 0, size = sizeof data;
        const LSTATUS read =
            RegQueryValueExA(handle, name, nullptr, &type, reinterpret_cast<BYTE*>(data), &size);
        if (read != ERROR_SUCCESS) return "status " + std::to_string(read);
        return std::to_string(type) + ':' + std::string(data, size);
    }

    HKEY handle = nullptr;
    DWORD disposition = 0;
    LSTATUS status;
};

}  // namespace rv_test
