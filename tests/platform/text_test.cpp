// Narrow text to wide and back, as far as every locale agrees, and the counted wide texts.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using namespace std::string_view_literals;

TEST(Text, CountsAndRoomsBothWays) {
    constexpr char kNarrow[] = "ab\0cd";
    constexpr wchar_t kWide[] = L"ab\0cd";
    constexpr struct {
        const char* why;
        UINT code_page;
        int length;
        int room;
        int expected;  // 0 is the failure
        DWORD error;
        std::string_view written;
    } kRows[] = {
        {"to the terminator", CP_ACP, -1, 8, 3, 0, "ab\0"sv},
        {"exactly enough room", CP_THREAD_ACP, -1, 3, 3, 0, "ab\0"sv},
        {"no room for the terminator", CP_ACP, -1, 2, 0, ERROR_INSUFFICIENT_BUFFER, "ab"sv},
        {"NUL inside", CP_THREAD_ACP, 5, 8, 5, 0, "ab\0cd"sv},
        {"room asked for, terminated", CP_ACP, -1, 0, 3, 0, ""sv},
        {"room asked for, counted", CP_THREAD_ACP, 5, 0, 5, 0, ""sv},
        {"nothing to convert", CP_ACP, 0, 8, 0, ERROR_INVALID_PARAMETER, ""sv},
        {"negative room", CP_ACP, -1, -1, 0, ERROR_INVALID_PARAMETER, ""sv},
        {"no such code page", 54321, -1, 8, 0, ERROR_INVALID_PARAMETER, ""sv},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        std::string expected(row.written);
        expected.resize(8, '#');
        std::wstring wide(8, L'#');
        SetLastError(0);
        EXPECT_EQ(MultiByteToWideChar(row.code_page, 0, kNarrow, row.length, wide.data(), row.room),
                  row.expected);
        EXPECT_EQ(GetLastError(), row.error);
        EXPECT_EQ(wide, std::wstring(expected.begin(), expected.end()));
        std::string narrow(8, '#');
        SetLastError(0);
        EXPECT_EQ(WideCharToMultiByte(row.code_page, 0, kWide, row.length, narrow.data(), row.room,
                                      nullptr, nullptr),
                  row.expected);
        EXPECT_EQ(GetLastError(), row.error);
        EXPECT_EQ(narrow, expected);
    }
}

TEST(Bstr, CountsCharactersAndTerminates) {
    const BSTR text = SysAllocStringLen(L"a\0bc", 3);
    EXPECT_EQ(SysStringLen(text), 3u);
    EXPECT_EQ(std::wstring_view(text, 4), L"a\0b\0"sv);
    SysFreeString(text);
    const BSTR blank = SysAllocStringLen(nullptr, 1000);
    EXPECT_EQ(SysStringLen(blank), 1000u);
    EXPECT_EQ(blank[1000], L'\0');
    SysFreeString(blank);
    EXPECT_EQ(SysAllocStringLen(nullptr, 0xFFFFFFFF), nullptr) << "its bytes need 33 bits";
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    SysFreeString(nullptr);
}

}  // namespace
