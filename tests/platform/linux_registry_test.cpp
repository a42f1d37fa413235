// The file that the registry is kept in.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <thread>
#include <vector>

#include "allocation_sweep.h"
#include "file_size_limit.h"
#include "test_registry.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using rv_test::Read_File;
using rv_test::TestKey;
using rv_test::TestRegistry;
using rv_test::Write_File;

constexpr LSTATUS kCorrupt = ERROR_REGISTRY_CORRUPT;
const std::string kHeader = "Windows Registry Editor Version 5.00\n";

LSTATUS Status() {
    DWORD keys;
    return RegQueryInfoKeyA(HKEY_CURRENT_USER, nullptr, nullptr, nullptr, &keys, nullptr, nullptr,
                            nullptr, nullptr, nullptr, nullptr, nullptr);
}

// What the value "v" of HKEY_CURRENT_USER\k is when a file holds the text.
std::string Read(const TestRegistry& registry, const std::string& text) {
    Write_File(registry.Path(), kHeader + text);
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "k", 0, KEY_READ, &key) != ERROR_SUCCESS) return "no key";
    RegCloseKey(key);
    return TestKey(HKEY_CURRENT_USER, "k").Get("v");
}

TEST(LinuxRegistry, ReadsWhatEditorsExport) {
    const TestRegistry registry(HKEY_CURRENT_USER, "none");
    const struct {
        const char* why;
        std::string value, lines;
    } kRows[] = {
        {"text", "1:a\\b \"c\"\0"s, "\"v\"=\"a\\\\b \\\"c\\\"\"\n"},
        {"blanks, comments, CRLF", "1:x\0"s, "; c\r\n\r\n \"V\" = \"x\" ; c\r\n;\"v\"=\"y\"\r\n"},
        {"number", "4:\x2A\0\0\xFF"s, "\"v\"=dword:ff00002A\n"},
        {"bytes in lines", "3:\x01\xAB\x03"s, "\"v\"=hex:01,aB,\\\r\n  03\n"},
        {"no bytes", "3:", "\"v\"=hex:\n"},
        {"other type", "11:\x01", "\"v\"=hex(b):01\n"},
        {"characters beyond ASCII", "1:\xC3\xA4\xE2\x82\xAC\0"s,
         "\"v\"=hex(1):e4,00,ac,20,00,00\n"},
        {"pairs, the first and the last", "1:\xF0\x90\x80\x80\xF4\x8F\xBF\xBF\0"s,
         "\"v\"=hex(1):00,d8,00,dc,ff,db,ff,df,00,00\n"},
        {"a byte, half a pair", "2:\xFF\xED\xA0\x80"s, "\"v\"=hex(2):ff,dc,00,d8\n"},
        {"second of two", "1:b\0"s, "\"v\"=\"a\"\n\"V\"=\"b\"\n"},
        {"taken away", "status 2", "\"v\"=\"a\"\n\"v\"=-\n"},
        {"key taken away", "no key", "\"v\"=\"a\"\n[-hkey_current_user\\K]\n\"v\"=\"b\"\n"},
        {"key taken away and made", "status 2",
         "\"v\"=\"a\"\n[-HKEY_CURRENT_USER\\k]\n[HKEY_CURRENT_USER\\k]\n"},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(Read(registry, "[HKEY_CURRENT_USER\\k]\n" + row.lines), row.value) << row.why;
    EXPECT_EQ(Read(registry, "[HKEY_CURRENT_USER\\k]\n\"v\"=\"x\"\n"), "1:x\0"s);
    Write_File(registry.Path(), "\xEF\xBB\xBF" + kHeader + "[HKEY_CLASSES_ROOT\\x]\n");
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "software\\classes\\X", 0, KEY_READ, &key),
              ERROR_SUCCESS);
    RegCloseKey(key);
}

TEST(LinuxRegistry, RefusesADamagedFileAndLeavesItAlone) {
    const TestRegistry registry(HKEY_CURRENT_USER, "none");
    const std::string long_name(256, 'n'), long_value(16384, 'n');
    std::string deep;
    for (int level = 0; level < 513; ++level)
        deep += "\\d";
    const struct {
        int line;
        const char* says;
        std::string text;
    } kRows[] = {
        {1, "take a file that begins so", "REGEDIT4\n"},
        {1, "cut off", ""},
        {1, "save the file in UTF-8", "\xFF\xFEW\0"s},
        {1, "no key", kHeader},
        {2, "no line end", kHeader + "[HKEY_CURRENT_USER]"},
        {2, "NUL", kHeader + "[HKEY_CURRENT_USER\\\0]\n"s},
        {2, "bracket at its end", kHeader + "[HKEY_CURRENT_USER\n"},
        {2, "root", kHeader + "[HKEY_USERS\\x]\n"},
        {2, "root", kHeader + "[]\n"},
        {3, "empty", kHeader + "[HKEY_CURRENT_USER\\]x]\n[HKEY_CURRENT_USER\\\\x]\n"},
        {2, "255", kHeader + "[HKEY_CURRENT_USER\\" + long_name + "]\n"},
        {2, "512", kHeader + "[HKEY_CURRENT_USER" + deep + "]\n"},
        {2, "root away", kHeader + "[-HKEY_CURRENT_USER]\n"},
        {2, "in no key", kHeader + "\"v\"=\"x\"\n"},
        {3, "neither", kHeader + "[HKEY_CURRENT_USER]\nx\n"},
        {3, "16383", kHeader + "[HKEY_CURRENT_USER]\n\"" + long_value + "\"=\"\"\n"},
        {3, "no =", kHeader + "[HKEY_CURRENT_USER]\n@\"x\"\n"},
        {3, "no data", kHeader + "[HKEY_CURRENT_USER]\n@=x\n"},
        {3, "quotation mark at the end", kHeader + "[HKEY_CURRENT_USER]\n@=\"x\\\"\n"},
        {3, "stands for nothing", kHeader + "[HKEY_CURRENT_USER]\n@=\"\\n\"\n"},
        {3, "goes on", kHeader + "[HKEY_CURRENT_USER]\n@=\"x\"y\n"},
        {3, "8 digits", kHeader + "[HKEY_CURRENT_USER]\n@=dword:123456789\n"},
        {3, "two digits", kHeader + "[HKEY_CURRENT_USER]\n@=hex:1 2\n"},
        {3, "two digits", kHeader + "[HKEY_CURRENT_USER]\n@=hex:01,\n"},
        {4, "two digits", kHeader + "[HKEY_CURRENT_USER]\n@=hex:01,\\\n\n"},
        {4, "no line end", kHeader + "[HKEY_CURRENT_USER]\n@=hex:01,\\\n"},
        {3, "within a character", kHeader + "[HKEY_CURRENT_USER]\n@=hex(1):01\n"},
        {3, "hex()", kHeader + "[HKEY_CURRENT_USER]\n@=hex(g):\n"},
    };
    for (const auto& row : kRows) {
        Write_File(registry.Path(), row.text);
        testing::internal::CaptureStderr();
        HKEY key = nullptr;
        EXPECT_EQ(Status(), kCorrupt) << row.says;
        EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "k", 0, nullptr, 0, KEY_WRITE, nullptr, &key,
                                  nullptr),
                  kCorrupt);
        EXPECT_EQ(RegDeleteValueA(HKEY_CURRENT_USER, "v"), kCorrupt);
        const std::string report = testing::internal::GetCapturedStderr();
        EXPECT_EQ(std::ranges::count(report, '\n'), 1) << report;
        EXPECT_TRUE(report.starts_with("registry: " + registry.Path() + ", line " +
                                       std::to_string(row.line) + ' '))
            << report;
        EXPECT_NE(report.find(row.says), std::string::npos) << report;
        EXPECT_EQ(Read_File(registry.Path()), row.text) << row.says;
    }
}

TEST(LinuxRegistry, IsWholeOrRefusedWhereverItWasCutOff) {
    const TestRegistry registry(HKEY_CURRENT_USER, "none");
    const TestKey key(HKEY_CURRENT_USER, "k\\below");
    key.Set("bytes", REG_BINARY, std::string(60, '\xAB'));
    key.Set("text", REG_SZ, "x\0"s);
    const std::string whole = Read_File(registry.Path());
    testing::internal::CaptureStderr();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        Write_File(registry.Path(), whole.substr(0, length));
        EXPECT_EQ(key.Set("text", REG_SZ, "y\0"s), kCorrupt) << whole.substr(0, length);
        EXPECT_EQ(Read_File(registry.Path()).size(), length);
    }
    testing::internal::GetCapturedStderr();
    Write_File(registry.Path(), whole);
    EXPECT_EQ(key.Get("text"), "1:x\0"s);
}

TEST(LinuxRegistry, IsWhereTheUserWantsIt) {
    const rv_test::ScratchDirectory scratch;
    const rv_test::Environment home("HOME", scratch / "home"), none("RVUTILS_REGISTRY", "");
    const auto make = [] { return TestKey(HKEY_CURRENT_USER, "k").status; };
    {
        const rv_test::Environment config("XDG_CONFIG_HOME", "");
        EXPECT_EQ(make(), ERROR_SUCCESS);
        EXPECT_TRUE(fs::exists(scratch / "home/.config/rvutils/registry.reg"));
    }
    const rv_test::Environment config("XDG_CONFIG_HOME", scratch / "config");
    EXPECT_EQ(make(), ERROR_SUCCESS);
    const std::string path = scratch / "config/rvutils/registry.reg";
    struct stat status;
    EXPECT_TRUE(stat(path.c_str(), &status) == 0 && (status.st_mode & 0777) == 0600);

    // A link stays one, and the file keeps its mode.
    fs::rename(path, scratch / "kept.reg");
    fs::permissions(scratch / "kept.reg", fs::perms{0640});
    fs::create_symlink(scratch / "kept.reg", path);
    EXPECT_EQ(TestKey(HKEY_CURRENT_USER, "second").disposition, REG_CREATED_NEW_KEY);
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_NE(Read_File(scratch / "kept.reg").find("second"), std::string::npos);
    EXPECT_TRUE(stat(path.c_str(), &status) == 0 && (status.st_mode & 0777) == 0640);
}

TEST(LinuxRegistry, StaysAsItWasWhenTheDiskIsFull) {
    const TestRegistry registry(HKEY_CURRENT_USER, "none");
    const TestKey key(HKEY_CURRENT_USER, "k");
    key.Set("v", REG_SZ, "x\0"s);
    const std::string before = Read_File(registry.Path());
    {
        const rv_test::FileSizeLimit limit(before.size() + 10);
        EXPECT_EQ(key.Set("v", REG_BINARY, std::string(100, 'x')), LSTATUS{ERROR_DISK_FULL});
    }
    EXPECT_EQ(key.Get("v"), "1:x\0"s);
    EXPECT_EQ(Read_File(registry.Path()), before);
    EXPECT_FALSE(fs::exists(registry.Path() + ".new"));
}

TEST(LinuxRegistry, StaysAsItWasWithoutMemory) {
    const TestRegistry registry(HKEY_CURRENT_USER, "none");
    const TestKey key(HKEY_CURRENT_USER, "k");
    const std::string before = Read_File(registry.Path());
    const int failures = rv_test::Sweep_Allocations([&] {
        const TestKey made(HKEY_CURRENT_USER, "k\\a longer name than fits into a string");
        const LSTATUS set = made.handle ? made.Set("a longer name than a string", REG_SZ, "x")
                                        : LSTATUS{ERROR_NOT_ENOUGH_MEMORY};
        if (!rv_test::FailingAllocation::Failed()) return;
        const LSTATUS status = made.handle ? set : made.status;
        const AFX_ALLOC_HOOK failing = AfxSetAllocHook(nullptr);
        // It can go without what only spares the writing of what is there already.
        if (status == ERROR_SUCCESS)
            EXPECT_EQ(made.Get("a longer name than a string"), "1:x");
        else
            EXPECT_EQ(status, LSTATUS{ERROR_NOT_ENOUGH_MEMORY});
        rv_test::Delete_Tree(key.handle, "a longer name than fits into a string");
        EXPECT_EQ(Read_File(registry.Path()), before);
        // The next attempt begins without what was kept.
        Write_File(registry.Path(), before);
        AfxSetAllocHook(failing);
    });
    EXPECT_GT(failures, 20);
}

// Threads and processes alike: each of them adds its own key, and all are there in the end.
TEST(LinuxRegistry, LosesNothingOfThoseThatWriteAtOnce) {
    const TestRegistry registry(HKEY_CURRENT_USER, "none");
    constexpr int kWriters = 4, kRounds = 25;
    const auto write = [](int writer) {
        for (int round = 0; round < kRounds; ++round)
            if (TestKey(HKEY_CURRENT_USER, "k\\" + std::to_string(writer * kRounds + round))
                    .disposition != REG_CREATED_NEW_KEY)
                return 1;
        return 0;
    };
    std::vector<pid_t> children;
    for (int writer = 0; writer < kWriters; ++writer) {
        children.push_back(fork());
        if (children.back() == 0) _exit(write(writer));
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    std::vector<std::thread> threads;
    for (int writer = kWriters; writer < 2 * kWriters; ++writer)
        threads.emplace_back([&, writer] { EXPECT_EQ(write(writer), 0); });
    for (std::thread& thread : threads)
        thread.join();
    const TestKey key(HKEY_CURRENT_USER, "k");
    DWORD keys = 0;
    RegQueryInfoKeyA(key.handle, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, nullptr,
                     nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(keys, DWORD{2 * kWriters * kRounds});
}

TEST(LinuxRegistry, TakesTimeByItsLength) {
    const TestRegistry registry(HKEY_CURRENT_USER, "none");
    std::string text = "[HKEY_CURRENT_USER\\k]\n\"v\"=hex:";
    for (int i = 0; i < 1000000; ++i)
        text += "ab,\\\n";
    text += "cd\n";
    for (int i = 0; i < 100000; ++i)
        text += "[HKEY_CURRENT_USER\\k\\" + std::to_string(i) + "]\n[-HKEY_CURRENT_USER\\k\\0]\n";
    EXPECT_EQ(Read(registry, text), "status 234");
}

}  // namespace
