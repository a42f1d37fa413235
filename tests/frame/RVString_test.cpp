// What the library relies on of the suite's string, beyond the counted string below it.
#include <RVUtils/CException.h>
#include <RVUtils/RVString.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <string_view>
#include <type_traits>

#include "allocation_sweep.h"
#include "texts.h"

namespace {

using namespace std::string_view_literals;

static_assert(std::is_base_of_v<CString, RVString>);
static_assert(std::has_virtual_destructor_v<RVString>);
static_assert(std::is_convertible_v<const RVString&, ULONG>);
static_assert(std::is_nothrow_move_assignable_v<RVString>);

using rv_test::Text;
using rv_test::To_RVString;

constexpr std::string_view kTexts[] = {
    ""sv,   "x"sv,    "X"sv,           "15 bytes inside"sv, "16 bytes outside"sv,
    "\0"sv, "a\0b"sv, "\x80\xfe\xff"sv};

TEST(RVString, CopiesAndComparesTextsFromEverySource) {
    for (const std::string_view text : kTexts)
        for (const std::string_view other : kTexts) {
            SCOPED_TRACE(testing::PrintToString(text) + " " + testing::PrintToString(other));
            const RVString suite = To_RVString(text);
            const CString counted = suite;
            RVString target = To_RVString(other);
            EXPECT_EQ(target != suite, text != other);
            EXPECT_EQ(target != counted, text != other);
            EXPECT_EQ(target == suite, text == other);
            EXPECT_EQ(target != text.data(), text.data() != std::string(other));
            EXPECT_EQ(Text(target = counted), text);
            target = To_RVString(other);
            EXPECT_EQ(Text(target = suite), text);
            target = To_RVString(other);
            EXPECT_EQ(Text(target = text.data()), text.data());  // up to its NUL
            EXPECT_EQ(Text(RVString(text.data())), text.data());
            EXPECT_EQ(Text(RVString(suite)), text);
        }
}

TEST(RVString, WidensAndNarrows) {
    for (const std::string_view text : {""sv, "A"sv, "16 bytes outside"sv, "a\0b"sv, "\0"sv}) {
        const std::wstring wide(text.begin(), text.end());
        BSTR const given = To_RVString(text).Get_BSTR();
        ASSERT_NE(given, nullptr);
        EXPECT_EQ(std::wstring_view(given, SysStringLen(given)), wide);
        RVString back = "before";
        EXPECT_EQ(Text(back = given), text.data());  // up to its NUL
        EXPECT_EQ(Text(RVString(given)), text.data());
        SysFreeString(given);
    }
    // Every byte comes back, in whatever locale.
    std::string all;
    for (int byte = 255; byte > 0; --byte)
        all += static_cast<char>(byte);
    BSTR const wide = RVString(all.c_str()).Get_BSTR();
    EXPECT_EQ(Text(RVString(wide)), all);
    SysFreeString(wide);
    wchar_t* const null = nullptr;
    EXPECT_EQ(Text(RVString(null)), "");
}

TEST(RVString, ReadsNumbers) {
    constexpr struct {
        std::string_view text;
        ULONG number;
    } kRows[] = {{"", 0},
                 {"0042", 42},
                 {" \t\n\v\f\r100", 100},
                 {"+5", 5},
                 {"-1", 4294967295},
                 {"4294967295", 4294967295},
                 {"99999999999999999999", 1661992959},  // 10^20 - 1, modulo 2^32
                 {"12 13", 12},
                 {"1\0002"sv, 1},
                 {"x12", 0},
                 {"- 1", 0},
                 {"--1", 0},
                 {"\xa0"
                  "5",
                  0},
                 {"0x1f", 0}};
    for (const auto& row : kRows)
        EXPECT_EQ(static_cast<ULONG>(To_RVString(row.text)), row.number) << row.text;
}

TEST(RVString, WritesNumbersThatReadBack) {
    RVString text = "before";
    for (const int number : {0, 9, -1, 10, INT_MAX, INT_MIN}) {
        text.Number_To_String(number);
        EXPECT_EQ(Text(text), std::to_string(number));
        EXPECT_EQ(static_cast<ULONG>(text), static_cast<ULONG>(number));
    }
    text.Number_To_String(ULONG{4294967295});
    EXPECT_EQ(Text(text), "4294967295");
}

TEST(RVString, LoadsStringResources) {
    for (const unsigned int length : {1u, 15u, 16u, 250u, 251u, 252u, 253u, 254u, 255u, 256u, 257u,
                                      1018u, 1020u, 1023u, 1025u}) {
        std::string expected;
        for (unsigned int i = 0; i < length; ++i)
            expected += static_cast<char>('0' + i % 10);
        for (const HINSTANCE module : {HINSTANCE(nullptr), HINSTANCE(GetModuleHandleA(nullptr))}) {
            RVString text = "before";
            EXPECT_TRUE(text.Load_String(module, length)) << length;
            EXPECT_EQ(Text(text), expected);
        }
    }
    RVString text = "before";
    for (const unsigned int absent : {0u, 2u, 14u, 17u, 249u, 65535u}) {
        EXPECT_FALSE(text.Load_String(nullptr, absent)) << absent;
        EXPECT_EQ(Text(text), "before");
    }
}

TEST(RVString, ThrowsWithoutMemoryAndKeepsTheText) {
    wchar_t wide[] = L"more than fifteen bytes";
    for (int way = 0; way < 6; ++way) {
        RVString text;
        const auto change = [&] {
            text = "before";
            if (way == 0) text = "more than fifteen bytes";
            if (way == 1) text = CString("more than fifteen bytes");
            if (way == 2) text = wide;
            if (way == 3 && !text.Load_String(nullptr, 16)) ADD_FAILURE();
            if (way == 4 && !text.Load_String(nullptr, 1025)) ADD_FAILURE();
            if (way == 5) SysFreeString(text.Get_BSTR());
            EXPECT_EQ(Text(text) == "before", way == 5);
        };
        rv_test::Sweep_Exceptions(change, [&] { EXPECT_EQ(Text(text), "before"); });
    }
}

}  // namespace
