// A registry file: one that is refused is left as it is; one that is read and written is written
// the same way ever after.
#include <RVUtils/winapi.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "test_registry.h"

namespace {

// Sets a value, and gives what the file is then; what it was, when it is refused.
std::string Written(const rv_test::TestRegistry& registry, const char* text, LSTATUS& status) {
    status = RegSetValueExA(HKEY_CURRENT_USER, "fuzz", 0, REG_SZ,
                            reinterpret_cast<const BYTE*>(text), 2);
    return rv_test::Read_File(registry.Path());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const rv_test::TestRegistry s_Registry(HKEY_CURRENT_USER, "none");
    // Most of what comes is no registry without its first line.
    for (const char* const header : {"Windows Registry Editor Version 5.00\n", ""}) {
        const std::string text = header + std::string(reinterpret_cast<const char*>(data), size);
        rv_test::Write_File(s_Registry.Path(), text);
        LSTATUS status;
        const std::string first = Written(s_Registry, "1", status);
        if (status == LSTATUS{ERROR_REGISTRY_CORRUPT}) {
            if (first != text) std::abort();
            continue;
        }
        if (status != ERROR_SUCCESS) std::abort();
        // Another value, so that it is read again and written.
        rv_test::Write_File(s_Registry.Path(), first);
        Written(s_Registry, "2", status);
        if (status != ERROR_SUCCESS || Written(s_Registry, "1", status) != first) std::abort();
    }
    return 0;
}
