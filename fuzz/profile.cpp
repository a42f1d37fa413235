// A settings file: what stands in front of its section, and lines of other names in it, change
// nothing; a number that is given comes back.
#include <RVUtils/winapi.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "scratch.h"

namespace {

constexpr int kMissing = -123456789;

int Read(std::string_view text) {
    static const rv_test::ScratchDirectory s_Scratch;
    const std::string path = s_Scratch / "custom.ini";
    rv_test::Write_File(path, text);
    return static_cast<int>(
        GetPrivateProfileIntA("Translation", "LiveMode", kMissing, path.c_str()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const int number = Read(text);
    if (Read("[Other]\nLiveMode=5\n" + text) != number && !text.starts_with("\xEF\xBB\xBF"))
        std::abort();
    if (Read("[Translation]\nLive=5\nLiveMode=" + std::to_string(size) + '\n' + text) !=
        static_cast<int>(size))
        std::abort();
    return 0;
}
