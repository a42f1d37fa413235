// The text of a GUID, byte by byte, and the room that it needs.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

constexpr struct {
    const char* why;
    GUID guid;
    std::wstring_view text;
} kRows[] = {
    {"every digit",
     {0x01234567, 0x89AB, 0xCDEF, {0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10}},
     L"{01234567-89AB-CDEF-FEDC-BA9876543210}"},
    {"all zeros", {}, L"{00000000-0000-0000-0000-000000000000}"},
    {"IUnknown",
     {0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}},
     L"{00000000-0000-0000-C000-000000000046}"},
    {"small parts",
     {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}},
     L"{00000001-0002-0003-0405-060708090A0B}"},
};

TEST(Guid, IsWrittenInItsPublishedForm) {
    for (const auto& row : kRows) {
        for (const int size : {-1, 0, 38, 39, 40}) {
            SCOPED_TRACE(std::string(row.why) + ", " + std::to_string(size));
            std::wstring text(40, L'#');
            const bool fits = size > 38;
            EXPECT_EQ(StringFromGUID2(row.guid, text.data(), size), fits ? 39 : 0);
            std::wstring expected(fits ? row.text : L"");
            if (fits) expected.push_back(L'\0');
            expected.resize(40, L'#');
            EXPECT_EQ(text, expected);
        }
    }
}

TEST(Guid, IsEqualWithAllItsBytes) {
    const GUID guid = kRows[0].guid;
    EXPECT_TRUE(IsEqualGUID(guid, kRows[0].guid));
    for (std::size_t at = 0; at < sizeof(GUID); ++at) {
        GUID other = guid;
        reinterpret_cast<unsigned char*>(&other)[at] ^= 0x80;
        EXPECT_FALSE(IsEqualGUID(guid, other)) << at;
    }
}

}  // namespace
