// What the library relies on of the suite's string, beyond the counted string below it.
#include <RVUtils/CException.h>
#include <RVUtils/RVString.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "allocation_sweep.h"

namespace {

using namespace std::string_view_literals;
using rv_test::Sweep_Allocations;

static_assert(std::is_base_of_v<CString, RVString>);
static_assert(std::has_virtual_destructor_v<RVString>);
static_assert(std::is_convertible_v<const RVString&, ULONG>);
static_assert(std::is_nothrow_move_constructible_v<RVString>);
static_assert(std::is_nothrow_move_assignable_v<RVString>);

std::string Bytes(const CString& text) {
    return {text.GetString(), static_cast<std::size_t>(text.GetLength())};
}

CString Counted(std::string_view text) {
    return {text.data(), static_cast<int>(text.size())};
}

RVString Text(std::string_view text) {
    return RVString(Counted(text));
}

constexpr std::string_view kLong = "a text that is too long to live inside of its object";
constexpr std::string_view kTexts[] = {
    ""sv,   "x"sv,    "15 bytes inside"sv, "16 bytes outside"sv, kLong,
    "\0"sv, "a\0b"sv, "\x80\xfe\xff"sv};

TEST(RVString, CopiesTextsFromEverySource) {
    for (const std::string_view text : kTexts) {
        SCOPED_TRACE(testing::PrintToString(text));
        const CString plain = Counted(text);
        const RVString suite(plain);
        EXPECT_EQ(Bytes(suite), text);
        EXPECT_EQ(Bytes(RVString(suite)), text);
        const std::string cut(text.data());  // a C text ends at its NUL
        EXPECT_EQ(Bytes(RVString(text.data())), cut);

        for (const std::string_view before : kTexts) {
            RVString target = Text(before);
            EXPECT_EQ(&(target = plain), &target);
            EXPECT_EQ(Bytes(target), text);
            target = Text(before);
            EXPECT_EQ(&(target = suite), &target);
            EXPECT_EQ(Bytes(target), text);
            target = Text(before);
            EXPECT_EQ(&(target = text.data()), &target);
            EXPECT_EQ(Bytes(target), cut);
        }
        RVString self = Text(text);
        self = static_cast<const CString&>(self);
        EXPECT_EQ(Bytes(self), text);
        self = self.GetString();
        EXPECT_EQ(Bytes(self), cut);
    }
}

TEST(RVString, NarrowsWideTexts) {
    for (std::wstring wide : {L"", L"A", L"{0000} : MUTEX", L"twenty characters ok"}) {
        const std::string narrow(wide.begin(), wide.end());
        EXPECT_EQ(Bytes(RVString(wide.data())), narrow);
        RVString target = "before";
        EXPECT_EQ(&(target = wide.data()), &target);
        EXPECT_EQ(Bytes(target), narrow);
    }
    wchar_t* const null = nullptr;
    EXPECT_EQ(Bytes(RVString(null)), "");
    RVString target = "before";
    target = null;
    EXPECT_EQ(Bytes(target), "");
}

TEST(RVString, DiffersByCaseAndByTheCountedLength) {
    for (const std::string_view left : kTexts)
        for (const std::string_view right : kTexts) {
            EXPECT_EQ(Text(left) != Counted(right), left != right) << left << " and " << right;
            EXPECT_EQ(Text(left) != Text(right), left != right) << left << " and " << right;
            EXPECT_EQ(Text(left) == Text(right), left == right) << left << " and " << right;
        }
    EXPECT_TRUE(RVString("Name") != CString("name"));
    EXPECT_TRUE(RVString("Name") != "name");
    EXPECT_FALSE(RVString("Name") != "Name");
    EXPECT_TRUE(Text("Name\0"sv) != "Name");
}

TEST(RVString, ReadsNumbers) {
    constexpr struct {
        std::string_view text;
        ULONG number;
    } kRows[] = {
        {"", 0},
        {"0", 0},
        {"7", 7},
        {"0042", 42},
        {" \t\n\v\f\r100", 100},
        {"+5", 5},
        {"-1", 4294967295},
        {"-2147483648", 2147483648},
        {"2147483648", 2147483648},
        {"4294967295", 4294967295},
        {"4294967296", 0},
        {"4294967297", 1},
        {"99999999999999999999", 1661992959},  // 10^20 - 1, modulo 2^32
        {"12px", 12},
        {"12 13", 12},
        {"1\0002"sv, 1},
        {"x12", 0},
        {"- 1", 0},
        {"--1", 0},
        {"+-1", 0},
        {"\xa0"
         "5",
         0},
        {"0x1f", 0},
        {"1e3", 1},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(static_cast<ULONG>(Text(row.text)), row.number) << row.text;
}

TEST(RVString, WritesNumbersThatReadBack) {
    const struct {
        int number;
        const char* text;
    } kSigned[] = {{0, "0"},
                   {9, "9"},
                   {-1, "-1"},
                   {10, "10"},
                   {-10, "-10"},
                   {INT_MAX, "2147483647"},
                   {INT_MIN, "-2147483648"}};
    RVString text(Counted(kLong));
    for (const auto& row : kSigned) {
        text.Number_To_String(row.number);
        EXPECT_EQ(Bytes(text), row.text);
        EXPECT_EQ(static_cast<ULONG>(text), static_cast<ULONG>(row.number));
    }
    const struct {
        ULONG number;
        const char* text;
    } kUnsigned[] = {{0, "0"}, {2147483648, "2147483648"}, {4294967295, "4294967295"}};
    for (const auto& row : kUnsigned) {
        text.Number_To_String(row.number);
        EXPECT_EQ(Bytes(text), row.text);
        EXPECT_EQ(static_cast<ULONG>(text), row.number);
    }
}

TEST(RVString, GivesABstrOfItsOwn) {
    for (const std::string_view text : {""sv, "x"sv, "a\0b"sv, "\0"sv, kLong}) {
        BSTR const wide = Text(text).Get_BSTR();
        ASSERT_NE(wide, nullptr);
        EXPECT_EQ(std::wstring_view(wide, SysStringLen(wide)),
                  std::wstring(text.begin(), text.end()));
        EXPECT_EQ(wide[SysStringLen(wide)], L'\0');
        SysFreeString(wide);
    }
}

TEST(RVString, LoadsStringResources) {
    for (const unsigned int length : {1u, 15u, 16u, 250u, 251u, 252u, 253u, 254u, 255u, 256u, 257u,
                                      1018u, 1019u, 1020u, 1021u, 1022u, 1023u, 1024u, 1025u}) {
        std::string expected;
        for (unsigned int i = 0; i < length; ++i)
            expected += static_cast<char>('0' + i % 10);
        for (const HINSTANCE module : {HINSTANCE(nullptr), HINSTANCE(GetModuleHandleA(nullptr))}) {
            RVString text = "before";
            EXPECT_TRUE(text.Load_String(module, length)) << length;
            EXPECT_EQ(Bytes(text), expected);
        }
    }
    RVString text = "before";
    for (const unsigned int absent : {0u, 2u, 14u, 17u, 249u, 65535u}) {
        EXPECT_FALSE(text.Load_String(nullptr, absent)) << absent;
        EXPECT_EQ(Bytes(text), "before");
    }
}

// Each row needs memory, and leaves the text alone when there is none.
TEST(RVString, ThrowsWithoutMemoryAndKeepsTheText) {
    std::wstring wide(40, L'w');
    static wchar_t* s_Wide;
    s_Wide = wide.data();
    const struct {
        const char* why;
        void (*change)(RVString&);
        bool changes;
    } kRows[] = {
        {"text", [](RVString& text) { text = kLong.data(); }, true},
        {"string", [](RVString& text) { text = Counted(kLong); }, true},
        {"wide text", [](RVString& text) { text = s_Wide; }, true},
        {"resource", [](RVString& text) { EXPECT_TRUE(text.Load_String(nullptr, 16)); }, true},
        {"longer resource", [](RVString& text) { EXPECT_TRUE(text.Load_String(nullptr, 1025)); },
         true},
        {"copy", [](RVString&) { const RVString copy(Counted(kLong)); }, false},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const long failures = Sweep_Allocations([&] {
            RVString text = "before";
            try {
                row.change(text);
                EXPECT_EQ(Bytes(text) != "before", row.changes);
            } catch (CMemoryException* exception) {
                exception->Delete();
                EXPECT_EQ(Bytes(text), "before");
            }
        });
        EXPECT_GE(failures, 1);
    }
}

// On Windows the system's own heap holds them, which nothing refuses.
TEST(RVString, NeverGivesANullBstr) {
    Sweep_Allocations([] {
        try {
            BSTR const text = RVString("x").Get_BSTR();
            EXPECT_NE(text, nullptr);
            SysFreeString(text);
        } catch (CMemoryException* exception) {
            exception->Delete();
        }
    });
}

}  // namespace
