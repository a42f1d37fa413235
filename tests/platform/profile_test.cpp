// Numbers in settings files, as either platform reads them.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include "allocation_sweep.h"
#include "scratch.h"

namespace {

constexpr int kMissing = 77;

int Read(const std::string& path) {
    return static_cast<int>(
        GetPrivateProfileIntA("Translation", "LiveMode", kMissing, path.c_str()));
}

TEST(Profile, HasANumberBehindAName) {
    const rv_test::ScratchDirectory scratch;
    constexpr struct {
        const char* why;
        int number;
        std::string_view text;
    } kRows[] = {
        {"plain", 1, "[Translation]\r\nLiveMode=1\r\n"},
        {"no line end", 3, "[Translation]\nLiveMode=3"},
        {"line ends of the third kind", 3, "[Translation]\rLiveMode=3\r"},
        {"case", 4, "[TRANSLATION]\nlivemode=4\n"},
        {"white space", 5, "\n  [ Translation\t]  \n  LiveMode \t =   5  \n"},
        {"quotes", 7, "[Translation]\nLiveMode=\"7\"\n"},
        {"other quotes", 8, "[Translation]\nLiveMode=' 8'\n"},
        {"half the quotes", 0, "[Translation]\nLiveMode=\"3\n"},
        {"nothing in quotes", kMissing, "[Translation]\nLiveMode=\"\"\n"},
        {"comments", 9, ";[Translation]\n[Translation];\n ;LiveMode=1\nLiveMode=9 ; one\n"},
        {"negative", -11, "[Translation]\nLiveMode=-11\n"},
        {"positive", 12, "[Translation]\nLiveMode=+12\n"},
        {"two signs", 0, "[Translation]\nLiveMode=+-5\n"},
        {"ends at a letter", 13, "[Translation]\nLiveMode=13abc\n"},
        {"no number", 0, "[Translation]\nLiveMode=abc\n"},
        {"two equals signs", 0, "[Translation]\nLiveMode==3\n"},
        {"other bases", 31, "[Translation]\nLiveMode=0x1F\n"},
        {"no other base", 10, "[Translation]\nLiveMode=010\n"},
        {"largest", -1, "[Translation]\nLiveMode=4294967295\n"},
        {"too large", 1, "[Translation]\nLiveMode=4294967297\n"},
        {"nothing behind it", kMissing, "[Translation]\nLiveMode=\nLiveMode=2\n"},
        {"no equals sign", kMissing, "[Translation]\nLiveMode\n"},
        {"other name", kMissing, "[Translation]\nLiveModes=1\nLive=1\n"},
        {"other section", kMissing, "[Other]\nLiveMode=1\n"},
        {"outside of all sections", kMissing, "LiveMode=1\n[Translation]\n"},
        {"first of two", 1, "[Other]\n[Translation]\nLiveMode=1\nLiveMode=2\n"},
        {"second section", kMissing, "[Translation]\n[Other]\n[Translation]\nLiveMode=2\n"},
        {"last bracket", kMissing, "[Translation]]\nLiveMode=1\n"},
        {"no bracket", 2, "[Translation]\n[Other\nLiveMode=2\n"},
        {"no name", kMissing, "[Translation]\n[]\nLiveMode=2\n"},
        {"byte order mark", 3, "\xEF\xBB\xBF[Translation]\nLiveMode=3\n"},
        {"empty", kMissing, ""},
    };
    const std::string path = scratch / "custom.ini";
    for (const auto& row : kRows) {
        rv_test::Write_File(path, row.text);
        EXPECT_EQ(Read(path), row.number) << row.why;
    }
    EXPECT_EQ(Read(scratch / "none.ini"), kMissing);
    EXPECT_EQ(Read(scratch.Path().string()), kMissing) << "a directory";
    EXPECT_EQ(Read(scratch / "none/custom.ini"), kMissing);
}

TEST(Profile, IsFoundByAnySpellingOfItsPath) {
    const rv_test::ScratchDirectory scratch;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(scratch.Path());
    rv_test::Write_File("custom.ini", "[Translation]\nLiveMode=1\n");
    for (const char* const path : {".\\custom.ini", ".\\\\custom.ini", "./custom.ini"})
        EXPECT_EQ(Read(path), 1) << path;
    std::filesystem::current_path(before);
}

// Windows takes its memory elsewhere.
TEST(Profile, IsMissingWithoutMemory) {
    const rv_test::ScratchDirectory scratch;
    const std::string path = scratch / "custom.ini";
    rv_test::Write_File(path, "[Translation]\nLiveMode=1\n");
    rv_test::Sweep_Allocations([&] {
        const int number = Read(path);
        EXPECT_EQ(number, rv_test::FailingAllocation::Failed() ? kMissing : 1);
    });
}

}  // namespace
