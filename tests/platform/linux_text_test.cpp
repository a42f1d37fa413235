// The encodings of locales, where the layer supplies them itself.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>
#include <locale.h>

#include <iterator>
#include <string>
#include <string_view>

namespace {

using namespace std::string_view_literals;

// The encodings of two locales that every system has, to be used by a thread.
const locale_t kAscii = newlocale(LC_CTYPE_MASK, "C", nullptr);
const locale_t kUtf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);

std::wstring Widen(std::string_view text) {
    wchar_t wide[16];
    const int count = MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()),
                                          wide, static_cast<int>(std::size(wide)));
    return {wide, static_cast<std::size_t>(count)};
}

// What fits of the text.
std::string Narrow(std::wstring_view text, int room = 16, BOOL* replaced = nullptr) {
    std::string narrow(16, '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), narrow.data(), room,
                        nullptr, replaced);
    return narrow.c_str();
}

// By the table of well-formed sequences in the standard of the encoding.
TEST(LinuxText, Utf8) {
    constexpr struct {
        const char* why;
        std::string_view narrow;
        std::wstring_view wide;
    } kRows[] = {
        {"two bytes", "a\xDF\xBFz", L"a\x07FFz"},
        {"three bytes", "\xE2\x82\xAC", L"\x20AC"},
        {"four bytes, the last", "\xF4\x8F\xBF\xBF", L"\x10FFFF"},
        {"beyond the last", "\xF4\x90\x80\x80", L"\xDCF4\xDC90\xDC80\xDC80"},
        {"a lone byte", "a\x80z", L"a\xDC80z"},
        {"cut off at the end", "a\xE2\x82", L"a\xDCE2\xDC82"},
        {"cut off by a character", "\xE2\xC3\xA9", L"\xDCE2\x00E9"},
        {"too long a form", "\xC0\x80", L"\xDCC0\xDC80"},
        {"a surrogate", "\xED\xB2\x80", L"\xDCED\xDCB2\xDC80"},
    };
    uselocale(kUtf8);
    for (const auto& row : kRows) {
        EXPECT_EQ(Widen(row.narrow), row.wide) << row.why;
        EXPECT_EQ(Narrow(row.wide), row.narrow) << row.why;
    }
    EXPECT_EQ(Narrow(L"\x110000\xD800z"), "??z") << "no characters";
    for (int room = 1; room <= 6; ++room)
        EXPECT_EQ(Narrow(L"a\x20AC\xE9", room).size(), room < 4 ? 1u : room < 6 ? 4u : 6u);
    uselocale(LC_GLOBAL_LOCALE);
}

TEST(LinuxText, EveryPairOfBytesSurvivesTheWayThereAndBack) {
    for (const locale_t locale : {kUtf8, kAscii}) {
        uselocale(locale);
        for (int pair = 0x0101; pair < 0x10000; ++pair) {
            if ((pair & 0xFF) == 0) continue;
            for (const std::string_view rest : {"z", "\x80\x80z", "\xBF\xBF\xBF\xBF"}) {
                std::string text = {static_cast<char>(pair >> 8), static_cast<char>(pair)};
                text += rest;
                ASSERT_EQ(Narrow(Widen(text)), text) << (locale == kUtf8) << ' ' << pair << rest;
            }
        }
    }
    BOOL replaced = TRUE;
    EXPECT_EQ(Narrow(L"a\xDCE9z", 16, &replaced), "a\xE9z");
    EXPECT_EQ(replaced, FALSE);
    EXPECT_EQ(Narrow(L"a\x20ACz", 16, &replaced), "a?z") << "what the encoding lacks";
    EXPECT_EQ(replaced, TRUE);
    uselocale(LC_GLOBAL_LOCALE);
}

}  // namespace
