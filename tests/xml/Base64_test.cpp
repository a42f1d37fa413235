#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "../../xml/base64/codec.h"
#include "literal_base64.h"

namespace {

using namespace rv_test;

std::string Random_Bytes(std::size_t count) {
    std::mt19937 random(static_cast<unsigned>(count));
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

TEST(Base64Codec, EveryCodecEncodesAndDecodesWholeGroups) {
    for (const rv::base64::Codec& codec : rv::base64::Codecs())
        for (std::size_t groups = 0; groups <= 150; ++groups) {
            SCOPED_TRACE(std::string(codec.m_Name).append(" ").append(std::to_string(groups)));
            // Blocks of exactly that size, so that a sanitizer sees the first byte too many.
            const std::string source = Random_Bytes(3 * groups);
            const std::vector<unsigned char> bytes(source.begin(), source.end());
            std::vector<char> text(4 * groups);
            codec.m_Encode(bytes.data(), groups, text.data());
            EXPECT_EQ(std::string(text.begin(), text.end()), Encode_Literally(source));

            std::vector<unsigned char> back(3 * groups + 1, 0xA5);
            EXPECT_EQ(codec.m_Decode(text.data(), groups, back.data()), groups);
            EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), back.begin()));
            EXPECT_EQ(back.back(), 0xA5);
        }
}

TEST(Base64Codec, EveryCodecStopsAtTheGroupWithAForeignByte) {
    constexpr std::size_t kGroups = 47;  // each loop of each codec has its turn
    const std::string whole = Encode_Literally(Random_Bytes(3 * kGroups));
    for (const rv::base64::Codec& codec : rv::base64::Codecs())
        for (std::size_t at = 0; at < 4 * kGroups; ++at)
            for (int value = 0; value < 256; ++value) {
                std::string text = whole;
                text[at] = static_cast<char>(value);
                const bool foreign = kLiteralAlphabet.find(text[at]) == std::string_view::npos;
                std::string back(3 * kGroups, '\0');
                const std::size_t groups = codec.m_Decode(
                    text.data(), kGroups, reinterpret_cast<unsigned char*>(back.data()));
                ASSERT_EQ(groups, foreign ? at / 4 : kGroups) << codec.m_Name << at << ' ' << value;
                ASSERT_EQ(back.substr(0, 3 * groups),
                          Decode_Literally(text, false).bytes.substr(0, 3 * groups));
            }
}

}  // namespace
