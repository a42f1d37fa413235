// Files of translated strings.
#include <RVUtils/LanguageFile.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "allocation_sweep.h"
#include "scratch.h"

namespace {

using namespace std::string_view_literals;
using rv::LanguageFile;
using Result = LanguageFile::Result;
using Items = std::map<std::pair<ULONG, ULONG>, std::string>;

rv::HeapText Bytes_Of(std::string_view text) {
    // An exact copy, so that a sanitizer sees a byte too many.
    rv::HeapText bytes(static_cast<char*>(rv::Heap_Allocate(text.size())));
    if (!bytes) AfxThrowMemoryException();
    std::memcpy(bytes.get(), text.data(), text.size());
    return bytes;
}

Result Parse(LanguageFile& file, std::string_view text, CString& fault) {
    return file.Parse(Bytes_Of(text), text.size(), "f.txt", fault);
}

Items Items_Of(const LanguageFile& file) {
    Items items;
    for (std::size_t i = 0; i < file.Count(); ++i) {
        const LanguageFile::Item item = file.At(i);
        EXPECT_EQ(file.Find(item.module, item.string).data(), item.text.data());
        items.emplace(std::pair(item.module, item.string), item.text);
    }
    EXPECT_EQ(items.size(), file.Count());
    return items;
}

constexpr ULONG kApp = rv::kApplicationModule;

TEST(LanguageFile, ReadsItems) {
    const struct {
        std::string_view text;
        Items items;
    } kRows[] = {
        {"", {}},
        {"\n", {}},
        {"# comment\n  # another = one\n\n \t \n", {}},
        {"app/1 = one\n", {{{kApp, 1}, "one"}}},
        {"4294967295/1=one\r\n", {{{kApp, 1}, "one"}}},
        {"\xEF\xBB\xBF"
         "0/0 = a = b # c\n",
         {{{0, 0}, "a = b # c"}}},
        {"\t7/4294967295\t = \t two words \t\n", {{{7, 4294967295}, "two words"}}},
        {"1/1 =\n1/2 = \n", {{{1, 1}, ""}, {{1, 2}, ""}}},
        {"2/1 = c\n1/2 = b\n1/1 = a\n", {{{1, 1}, "a"}, {{1, 2}, "b"}, {{2, 1}, "c"}}},
        {R"(1/1 = \n\r\t\\\s\x1a\x7f\x4A\x6F\x39\x00)"
         "\n",
         {{{1, 1},
           std::string("\n\r\t\\ \x1a\x7f"
                       "Jo9\0",
                       11)}}},
        {"1/1 = \xC3\x9F\xE2\x82\xAC\xF0\x9F\x98\x80 and more of it\n",
         {{{1, 1}, "\xC3\x9F\xE2\x82\xAC\xF0\x9F\x98\x80 and more of it"}}},
    };
    for (const auto& row : kRows) {
        LanguageFile file;
        CString fault;
        EXPECT_EQ(Parse(file, row.text, fault), Result::kRead) << row.text << fault.GetString();
        EXPECT_EQ(Items_Of(file), row.items) << row.text;
        EXPECT_EQ(file.Find(5, 5).data(), nullptr);
    }
}

TEST(LanguageFile, RefusesWhatIsDamaged) {
    constexpr struct {
        std::string_view text;
        std::string_view fault;
    } kRows[] = {
        {"app/1 = one", ":1: the line has no line end"},
        {"app/1 = one\n#", ":2: the line has no line end"},
        {"1/1 = a\\nb\\n\n\n1/2 = x\n1/1 = c\n", ":4: the line is there for the second time"},
        {"\n1/1 = a\n1 /2 = b\n", ":3: the line is no item"},
        {"one = 1\n", ":1: the line is no item"},
        {"apple/1 = a\n", ":1: the line is no item"},
        {"app/ = a\n", ":1: the line is no item"},
        {"/1 = a\n", ":1: the line is no item"},
        {"1/1\n", ":1: the line is no item"},
        {"1/-1 = a\n", ":1: the line is no item"},
        {"4294967296/1 = a\n", ":1: the line is no item"},
        {"1/99999999999999999999 = a\n", ":1: the line is no item"},
        {"1/1 = a\\\n", ":1: the line has a \\ that stands for nothing"},
        {"1/1 = \\q\n", ":1: the line has a \\ that stands for nothing"},
        {"1/1 = \\x8\n", ":1: the line has a \\ that stands for nothing"},
        {"1/1 = \\x80\n", ":1: the line has a \\ that stands for nothing"},
        {"1/1 = a\n1/2 = \0\n"sv, ":2: the line has a NUL character"},
        {"1/1 = Gr\xF6\xDF\x65\n", ":1: the line is not in UTF-8"},
        {"1/1 = \xC0\x80\n", ":1: the line is not in UTF-8"},
        {"1/1 = \xE0\x9F\xBF\n", ":1: the line is not in UTF-8"},
        {"1/1 = \xED\xA0\x80\n", ":1: the line is not in UTF-8"},
        {"1/1 = \xF4\x90\x80\x80\n", ":1: the line is not in UTF-8"},
        {"1/1 = a\n\xE2\x82", ":2: the line is not in UTF-8"},
    };
    LanguageFile file;
    CString fault;
    ASSERT_EQ(Parse(file, "1/1 = before\n", fault), Result::kRead);
    for (const auto& row : kRows) {
        fault = "";
        EXPECT_EQ(Parse(file, row.text, fault), Result::kRefused) << row.text;
        EXPECT_TRUE(std::string_view(fault).starts_with("f.txt" + std::string(row.fault)))
            << fault.GetString();
        EXPECT_EQ(file.Find(1, 1), "before");
    }
}

TEST(LanguageFile, TextsComeBackAndCutsAreSeen) {
    std::mt19937 random(20260101);
    constexpr std::string_view kPieces[] = {" ",        "\n",           "\r",   "\t", "\\",
                                            "\x01"sv,   "\0"sv,         "#",    "=",  "a",
                                            "\xC3\xA4", "\xE2\x82\xAC", "\x7F", "x41"};
    Items items;
    std::string text;
    while (items.size() < 300) {
        std::string item;
        for (auto count = random() % 8; count > 0; --count)
            item += kPieces[random() % std::size(kPieces)];
        // Each bit of the keys, and no order.
        const ULONG module = random() % 2 ? kApp : static_cast<ULONG>(random());
        const auto string = static_cast<ULONG>(random());
        if (!items.emplace(std::pair(module, string), item).second) continue;
        text += std::string(rv::Module_Name(module)) + '/' + std::to_string(string) + " = " +
                rv::Escaped_Text(item).GetString() + '\n';
    }
    LanguageFile file;
    CString fault;
    ASSERT_EQ(Parse(file, text, fault), Result::kRead) << fault.GetString();
    EXPECT_EQ(Items_Of(file), items);
    text.resize(text.find('\n', 400) + 1);
    for (std::size_t length = 0; length <= text.size(); ++length) {
        const bool whole = length == 0 || text[length - 1] == '\n';
        EXPECT_EQ(Parse(file, text.substr(0, length), fault) == Result::kRead, whole) << length;
    }
}

TEST(LanguageFile, WhatTheSystemRefuses) {
    const rv_test::ScratchDirectory scratch;
    LanguageFile file;
    CString fault;
    const std::string missing = scratch / "none.txt", folder = scratch.Path().string();
    EXPECT_EQ(file.Read(missing.c_str(), fault), Result::kMissing);
    EXPECT_EQ(file.Read((missing + "/none.txt").c_str(), fault), Result::kMissing);
    EXPECT_EQ(file.Read(folder.c_str(), fault), Result::kRefused);
    EXPECT_EQ(fault,
              (folder + ": cannot be opened; check the rights, and that it is no folder").c_str());
    const std::string huge = scratch / "huge.txt";
    rv_test::Write_File(huge, "");
    std::filesystem::resize_file(huge, (std::uintmax_t{256} << 20) + 1);
    EXPECT_EQ(file.Read(huge.c_str(), fault), Result::kRefused);
    EXPECT_EQ(fault, (huge + ": has more than 256 MiB; take a smaller file").c_str());
}

TEST(LanguageFile, ExhaustedMemory) {
    const rv_test::ScratchDirectory scratch;
    const std::string path = scratch / "a.txt";
    rv_test::Write_File(path, "1/1 = new\n1/2 = \\n\n");
    const int failures = rv_test::Sweep_Allocations([&] {
        LanguageFile file;
        CString fault;
        try {
            EXPECT_EQ(file.Read(path.c_str(), fault), Result::kRead) << fault.GetString();
            EXPECT_EQ(file.Find(1, 1), "new");
        } catch (CMemoryException* exception) {
            exception->Delete();
            EXPECT_EQ(file.Count(), 0U);
        }
    });
    EXPECT_GE(failures, 2);
}

}  // namespace
