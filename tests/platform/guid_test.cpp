// The text of a GUID, byte by byte, and the room that it needs.
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Guid, IsWrittenInItsPublishedFormAndEqualWithAllItsBytes) {
    const GUID guid = {
        0x01234567, 0x89AB, 0xCDEF, {0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10}};
    for (const int size : {-1, 0, 38, 39, 40}) {
        const bool fits = size > 38;
        std::wstring text(39, L'#');
        EXPECT_EQ(StringFromGUID2(guid, text.data(), size), fits ? 39 : 0);
        EXPECT_EQ(text, fits ? std::wstring(L"{01234567-89AB-CDEF-FEDC-BA9876543210}\0", 39)
                             : std::wstring(39, L'#'));
    }
    for (std::size_t at = 0; at <= sizeof(GUID); ++at) {
        GUID other = guid;
        if (at < sizeof(GUID)) reinterpret_cast<unsigned char*>(&other)[at] ^= 0x80;
        EXPECT_EQ(IsEqualGUID(guid, other) != FALSE, at == sizeof(GUID)) << at;
    }
}

}  // namespace
