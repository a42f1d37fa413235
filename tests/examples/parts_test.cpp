// The parts of the attachments program that outside bytes go through.

#include <RVUtils/XmlParser.h>
#include <attachments/crc32.h>
#include <attachments/names.h>
#include <attachments/section_scan.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "texts.h"

namespace {

using namespace attachments;

// What the reader makes of the first element's value; "(refused)" for a document that it refuses.
std::string First_Value(const std::string& document) {
    RVXmlParser parser;
    RVString name;
    RVString value;
    ULONG children = 0;
    if (!parser.Load_Text(rv_test::To_RVString(document))) return "(refused)";
    return parser.Next(name, value, children) ? rv_test::Text(value) : "(none)";
}

TEST(Names, EveryByteSurvivesTheReader) {
    for (int byte = 1; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        for (const std::string& name : {std::string(1, character), std::string("a") + character,
                                        character + std::string("b"), std::string(3, character)}) {
            std::string decoded;
            const std::string read = First_Value("<name>" + Encode_Name(name) + "</name>");
            ASSERT_TRUE(Decode_Name(read, decoded)) << "byte " << byte << " reads as " << read;
            ASSERT_EQ(decoded, name) << "byte " << byte;
        }
    }
}

TEST(Names, DecodingRefusesBrokenEscapes) {
    for (const char* const text : {"%", "a%", "%4", "%4G", "%G4", "%-1", "%+1", "% 1", "%0x"}) {
        std::string name;
        EXPECT_FALSE(Decode_Name(text, name)) << text;
    }
    std::string name;
    EXPECT_TRUE(Decode_Name("%2f%2Fb", name));
    EXPECT_EQ(name, "//b");
}

TEST(Names, TellsWhatMustNotBeMade) {
    using namespace std::string_literals;
    for (const std::string& name :
         {""s, "."s, ".."s, "/"s, "a/b"s, "../a"s, "\\"s, "a\\b"s, "..\\a"s, "a\0b"s, "a/"s})
        EXPECT_NE(Why_Unsafe(name), nullptr) << name;
    for (const std::string& name :
         {"a"s, "..a"s, ".a"s, "a b"s, "\xC3\xBC.txt"s, "COM10"s, "console"s})
        EXPECT_EQ(Why_Unsafe(name), nullptr) << name;
}

TEST(Crc32, GivesPublishedValuesHoweverTheBytesAreCut) {
    const struct {
        std::string_view bytes;
        std::uint32_t crc;
    } rows[] = {{"", 0},
                {"a", 0xE8B7BE43},
                {"123456789", 0xCBF43926},
                {"The quick brown fox jumps over the lazy dog", 0x414FA339}};
    for (const auto& row : rows)
        for (std::size_t cut = 0; cut <= row.bytes.size(); ++cut) {
            Crc32 crc;
            crc.Add(row.bytes.data(), cut);
            crc.Add(row.bytes.data() + cut, row.bytes.size() - cut);
            EXPECT_EQ(crc.Value(), row.crc) << row.bytes << " cut at " << cut;
        }
}

bool Fits(const std::string& body, std::size_t piece) {
    SectionScan scan;
    for (std::size_t at = 0; at < body.size(); at += piece)
        scan.Add(body.data() + at, std::min(piece, body.size() - at));
    return scan.Fits();
}

// All texts of up to four of the pieces that markers are made of; the reader is the judge.
TEST(SectionScan, AgreesWithTheReaderOnEveryMixOfMarkers) {
    const std::vector<std::string> pieces = {"<![CDATA[", "]]>", "]",  "]]",       ">", "<",
                                             "[",         "x",   "<!", "<![CDATA", "",  "!"};
    std::size_t fitting = 0;
    for (const auto& a : pieces)
        for (const auto& b : pieces)
            for (const auto& c : pieces)
                for (const auto& d : pieces) {
                    const std::string body = a + b + c + d;
                    const bool kept = First_Value("<a><![CDATA[" + body + "]]></a>") == body;
                    fitting += kept;
                    ASSERT_EQ(Fits(body, 1), kept) << body;
                    ASSERT_EQ(Fits(body, 1000), kept) << body;
                }
    EXPECT_GT(fitting, 1000U);
}

TEST(SectionScan, RefusesWhatTheReaderWouldLoseCountOf) {
    EXPECT_FALSE(Fits(std::string("a\0b", 3), 10));
    std::string deep;
    for (int level = 0; level < 65'535; ++level)
        deep += "<![CDATA[";
    for (int level = 0; level < 65'535; ++level)
        deep += "]]>";
    EXPECT_FALSE(Fits(deep, 4096));
}

}  // namespace
