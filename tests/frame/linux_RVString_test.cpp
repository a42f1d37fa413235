// Every byte comes back from the wide form, whatever the encoding of the thread's locale.
#include <RVUtils/RVString.h>
#include <gtest/gtest.h>
#include <locale.h>

#include <string>

namespace {

struct Row {
    const char* locale;
    const char* text;
    const wchar_t* wide;
};

TEST(RVString, KeepsEveryByteInEveryLocale) {
    const Row kRows[] = {{"C", "\xc3\xa9", L"\xdcc3\xdca9"},
                         {"C.utf8", "\xc3\xa9\xf0\x9f\x98\x80", L"\u00e9\U0001f600"},
                         {"C.utf8", "\xc3(\xff\xed\xa0\x80", L"\xdcc3(\xdcff\xdced\xdca0\xdc80"},
                         {"C.utf8", "cut \xe2\x82", L"cut \xdce2\xdc82"}};
    std::string all;
    for (int byte = 255; byte > 0; --byte)
        all += static_cast<char>(byte);
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::Message() << row.locale << ": " << row.text);
        const locale_t locale = newlocale(LC_CTYPE_MASK, row.locale, nullptr);
        ASSERT_NE(locale, nullptr);
        const locale_t before = uselocale(locale);
        for (const std::string& text : {std::string(row.text), all}) {
            BSTR const wide = RVString(text.c_str()).Get_BSTR();
            if (text == row.text) {
                EXPECT_STREQ(wide, row.wide);
            }
            EXPECT_EQ(RVString(wide).GetString(), text);
            SysFreeString(wide);
        }
        uselocale(before);
        freelocale(locale);
    }
}

}  // namespace
