// Locales of the C library that a test builds for itself. For Linux.
#pragma once

#include <cstdlib>
#include <span>
#include <stdexcept>
#include <string>

#include "environment.h"
#include "scratch.h"

// The leak sanitizer asks for it: the C library forgets a copy of LOCPATH whenever it loads a
// locale.
extern "C" [[gnu::used]] inline const char* __lsan_default_suppressions() {
    return "leak:argz_create_sep\nleak:argz_add_sep\n";
}

namespace rv_test {

// While one lives, the process finds the given locales, such as "de_DE.ISO-8859-1", and besides
// them only "C" and its kin. They have the categories LC_CTYPE, LC_NUMERIC and LC_TIME. One that
// cannot be built is missing; building takes about a second each.
class TestLocales {
public:
    explicit TestLocales(std::span<const char* const> names)
        : m_Path("LOCPATH", m_Directory.Path().string()) {
        // Other categories would take longer than these. That they are left out makes the
        // program fail, whatever it has built.
        Write_File(m_Directory / "build", R"(
            sed -n "/^comment_char/p;/^escape_char/p;/^LC_CTYPE/,/^END LC_CTYPE/p
                    /^LC_NUMERIC/,/^END LC_NUMERIC/p
                    /^LC_TIME/,/^END LC_TIME/p" "/usr/share/i18n/locales/${1%%.*}" >"$1.source"
            localedef -c --no-archive -i "./$1.source" -f "${1#*.}" "./$1" >/dev/null 2>&1
            true)");
        std::string build = "cd '" + m_Directory.Path().string() + "' && printf '%s\\n'";
        for (const char* const name : names)
            build += std::string(" ") + name;
        build += " | xargs -P \"$(nproc)\" -n 1 sh ./build";
        if (std::system(build.c_str()) != 0) throw std::runtime_error("cannot build locales");
    }

private:
    ScratchDirectory m_Directory;
    Environment m_Path;
};

}  // namespace rv_test
