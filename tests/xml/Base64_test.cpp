#include <RVUtils/XmlParser.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "../../xml/base64/codec.h"
#include "allocation_sweep.h"
#include "literal_base64.h"
#include "memory_file.h"
#include "platform/file_support.h"
#include "report_recorder.h"
#include "scratch.h"
#include "xml_support.h"

namespace {

namespace fs = std::filesystem;
using namespace rv_test;

constexpr std::size_t kChunk = 1'048'576;
constexpr std::size_t kStride = 1'048'567;  // what of one chunk is used before the next is read
constexpr int kDiskFull = CFileException::diskFull;

std::string Random_Bytes(std::size_t count) {
    std::mt19937 random(static_cast<unsigned>(count));
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

// What `before` becomes when a file is encoded behind it.
std::string Encoded(MemoryFile& source, const char* before = "", CFile** spill = nullptr) {
    RVString text(before);
    pBase64_Encode_File(source, text, spill);
    return Text(text);
}

std::string Decoded(const std::string& text) {
    MemoryFile target;
    RVString input = To_RVString(text);
    pBase64_Decode_File(target, input);
    EXPECT_EQ(Text(input), text);
    return target.m_Bytes;
}

// Decodes `text` as a file, and expects that it is used up.
LiteralDecode Decoded_From(const std::string& path, const std::string& text,
                           const std::string& prefix = "FILE://") {
    Write_File(path, text);
    MemoryFile target;
    RVString input = To_RVString(prefix + path);
    pBase64_Decode_File(target, input);
    EXPECT_FALSE(fs::exists(path));
    return {target.m_Bytes, Text(input)};
}

// Expects that a text decodes like the literal decoder has it, with each of the bytes put in the
// place of the one at `at`.
void Expect_Literal_Decodes(const std::string& path, std::string text, std::size_t at,
                            std::string_view bytes) {
    for (const char byte : bytes) {
        SCOPED_TRACE(testing::Message() << int{byte} << " at " << at);
        text[at] = byte;
        EXPECT_TRUE(Decoded(text) == Decode_Literally(text, false).bytes);
        const LiteralDecode expected = Decode_Literally(text, true);
        const LiteralDecode decoded = Decoded_From(path, text);
        EXPECT_TRUE(decoded.bytes == expected.bytes);
        EXPECT_TRUE(decoded.chunk == expected.chunk);
    }
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
                const bool foreign = Literal_Index(text[at]) < 0;
                std::string back(3 * kGroups, '\0');
                const std::size_t groups = codec.m_Decode(
                    text.data(), kGroups, reinterpret_cast<unsigned char*>(back.data()));
                ASSERT_EQ(groups, foreign ? at / 4 : kGroups) << codec.m_Name << at << ' ' << value;
                ASSERT_EQ(back.substr(0, 3 * groups),
                          Decode_Literally(text, false).bytes.substr(0, 3 * groups));
            }
}

TEST(Base64File, PublishedVectorsBothWays) {
    constexpr const char* kTexts[] = {"",         "Zg==",     "Zm8=",    "Zm9v",
                                      "Zm9vYg==", "Zm9vYmE=", "Zm9vYmFy"};
    const ScratchDirectory folder;
    for (std::size_t length = 0; length < std::size(kTexts); ++length) {
        const std::string bytes = std::string("foobar").substr(0, length);
        MemoryFile source(bytes);
        EXPECT_EQ(Encoded(source), kTexts[length]);
        EXPECT_EQ(Decoded(kTexts[length]), bytes);
        for (const char* prefix : {"FILE://", "file://", "fIlE://"})
            EXPECT_EQ(Decoded_From(folder / "v", kTexts[length], prefix).bytes, bytes);
    }
}

TEST(Base64File, DecodingEndsOrSkips) {
    constexpr struct {
        const char* why;
        std::string_view text;
        const char* from_string;
        const char* from_file;
    } kTexts[] = {{"no pad", "Zm9vYg", "foob", "foob"},
                  {"break in a group", "Zm9vY\n \tmFy", "foo", "foobar"},
                  {"pad, then text", "Zm9vYg==Zm9v", "foob", "foob"},
                  {"pad inside a group", "Zm=9vZm9v", "f", "f"},
                  {"one character alone", "Zm9vY", "foo", "foo"},
                  {"NUL byte", {"Zm9v\0YmFy", 9}, "foo", "foobar"},
                  {"letter of another alphabet", "Zm9v\xE4YmFy", "foo", "foobar"},
                  {"URL alphabet", "Zm9v-_YmFy", "foo", "foobar"},
                  {"less than the prefix", "FILE:", "\x14\x82\xc4", "\x14\x82\xc4"}};
    const ScratchDirectory folder;
    for (const auto& row : kTexts) {
        const std::string text(row.text);
        EXPECT_EQ(Decoded(text), row.from_string) << row.why;
        EXPECT_EQ(Decoded_From(folder / "t", text).bytes, row.from_file) << row.why;
    }
}

TEST(Base64File, EveryLengthInReadsOfEverySizeKeepsThePrefix) {
    const ScratchDirectory folder;
    std::vector<std::size_t> lengths(301);
    std::iota(lengths.begin(), lengths.end(), 0);
    for (const std::size_t edge : {1024U, 24U * 1024, 48U * 1024, 64U * 1024, 1U << 20})
        for (std::size_t length = edge - 2; length <= edge + 2; ++length)
            lengths.push_back(length);
    for (const std::size_t length : lengths) {
        const std::string bytes = Random_Bytes(length);
        const std::string text = Encode_Literally(bytes);
        for (const std::size_t most : {1U, 2U, 5U, 1024U, 1U << 30}) {
            MemoryFile source("skipped" + bytes);
            source.m_At = 7;
            source.m_MostAtOnce = most;
            ASSERT_TRUE(Encoded(source, "<a>") == "<a>" + text) << length << " by " << most;
        }
        ASSERT_TRUE(Decoded(text) == bytes) << length;
        ASSERT_TRUE(Decoded_From(folder / "t", text).bytes == bytes) << length;
    }
}

TEST(Base64File, CorruptedAtEveryPlaceAndAtTheEdgesOfChunks) {
    const ScratchDirectory folder;
    const std::string path = folder / "t";
    const std::string text = Encode_Literally(Random_Bytes(75));
    for (std::size_t at = 0; at < text.size(); ++at)
        Expect_Literal_Decodes(path, text, at, {"=\n\0\x80-", 5});

    std::string lines = Encode_Literally(Random_Bytes(2 << 20));
    for (std::size_t at = 77; at < lines.size(); at += 78)
        lines[at] = '\n';
    for (const std::size_t edge : {kStride, kStride + 9, 2 * kStride})
        for (std::size_t length = edge - 3; length <= edge + 3; ++length) {
            Expect_Literal_Decodes(path, lines.substr(0, length + 1), length, "=Z");
            Expect_Literal_Decodes(path, lines.substr(0, edge + 99), length, {"=\0", 2});
        }
}

TEST(Base64File, AFileThatIsNotDecodedWholeStays) {
    const ScratchDirectory folder;
    const std::string path = folder / "t";
    const std::string bytes = Random_Bytes(2 << 20);
    const std::string text = Encode_Literally(bytes);
    RVString input = Reference(folder / "none");
    MemoryFile none;
    EXPECT_EQ(Catch([&] { pBase64_Decode_File(none, input); }).cause, CFileException::fileNotFound);
    EXPECT_EQ(Text(input), Text(Reference(folder / "none")));

    for (const std::size_t room : {std::size_t{0}, std::size_t{1} << 20, bytes.size() - 1}) {
        Write_File(path, text);
        MemoryFile target;
        target.m_Room = room;
        input = Reference(path);
        EXPECT_EQ(Catch([&] { pBase64_Decode_File(target, input); }).cause, kDiskFull) << room;
        EXPECT_TRUE(target.m_Bytes == bytes.substr(0, target.m_Bytes.size())) << room;
        EXPECT_TRUE(Read_File(path) == text) << room;
    }

    // Cut short while it is read, where the system allows that to anybody else.
    for (const std::size_t left : {kStride, kStride + 100}) {
        ReportRecorder reports;
        Write_File(path, text);
        MemoryFile target;
        std::error_code refused;
        target.m_Before = [&] {
            if (fs::file_size(path) > left) fs::resize_file(path, left, refused);
        };
        input = Reference(path);
        pBase64_Decode_File(target, input);
        const bool cut = !refused;
        EXPECT_EQ(reports.Take(), cut ? (Reports{{23, "XmlParser"}}) : Reports());
        EXPECT_EQ(fs::exists(path), cut);
        EXPECT_TRUE(target.m_Bytes == (cut ? bytes.substr(0, left / 4 * 3) : bytes)) << left;
        const std::size_t last = left == kStride ? 0 : kStride;
        EXPECT_TRUE(!cut || Text(input) == text.substr(last, last == 0 ? kChunk : left - last));
    }
}

TEST(Base64File, SizingTheText) {
    constexpr ULONGLONG kTooLong = 536'870'912;  // four times that is no length of a text
    const ScratchDirectory folder;
    const std::string path = folder / "source";
    const struct {
        const char* why;
        ULONGLONG claimed;
        bool length_fails;
        bool may_spill;
        Reports reports;
        bool spills;
    } kRows[] = {
        {"as long as it is", 8, false, true, {}, false},
        {"longer than a text, no spill", kTooLong, false, false, {{23, "XmlParser"}}, false},
        {"longer than a text", kTooLong, false, true, {}, true},
        {"low 32 bits count", (1ULL << 32) + 1, false, true, {}, false},
        {"length unknown", 0, true, true, {{25, "XmlParser"}}, false}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        ReportRecorder reports;
        MemoryFile source("spilling");
        source.m_Claimed = row.claimed;
        source.m_LengthFails = row.length_fails;
        source.m_Path = path;
        CFile* spill = nullptr;
        EXPECT_EQ(Encoded(source, "<a>", row.may_spill ? &spill : nullptr),
                  row.spills ? "<a>" : "<a>c3BpbGxpbmc=");
        EXPECT_EQ(reports.Take(), row.reports);
        ASSERT_EQ(spill != nullptr, row.spills);
        EXPECT_EQ(fs::exists(path + ".dat"), row.spills);
        if (!spill) continue;
        spill->Seek(0, CFile::begin);
        char byte = 0;
        EXPECT_EQ(spill->Read(&byte, 1), 1U);
        delete spill;
        EXPECT_EQ(Read_File(path + ".dat"), "<a>c3BpbGxpbmc=");
        fs::remove(path + ".dat");
    }

    MemoryFile source("spilling");
    source.m_Claimed = kTooLong;
    source.m_Path = folder / "no such folder/source";
    RVString text("<a>");
    CFile* spill = nullptr;
    EXPECT_NE(Catch([&] { pBase64_Encode_File(source, text, &spill); }).cause, -1);
    EXPECT_EQ(spill, nullptr);
    EXPECT_EQ(Text(text), "<a>");
}

TEST(Base64File, WhereTheTextGoesIsAskedForEachBlock) {
    for (const std::size_t opened : {0U, 4U, 5U}) {
        MemoryFile source("foobarfoobar");
        MemoryFile file;
        CFile* spill = nullptr;
        source.m_MostAtOnce = 1;
        source.m_Before = [&] {
            if (source.m_At == opened) spill = &file;
        };
        const std::string before = opened < 3 ? "" : "Zm9v";
        EXPECT_EQ(Encoded(source, "<a>", &spill), "<a>" + before) << opened;
        EXPECT_EQ(before + file.m_Bytes, "Zm9vYmFyZm9vYmFy") << opened;
    }
}

TEST(Base64File, WhatTheFilesThrowPassesOn) {
    MemoryFile source(Random_Bytes(100)), full;
    source.m_MostAtOnce = 10;
    source.m_FailsFrom = 50;
    RVString text("<a>"), input("Zm9vYmFyZm9v");
    const Thrown thrown = Catch([&] { pBase64_Encode_File(source, text, nullptr); });
    EXPECT_EQ(thrown.cause, CFileException::hardIO);
    EXPECT_EQ(Text(text), "<a>" + Encode_Literally(source.m_Bytes.substr(0, 48)));

    MemoryFile whole("foobar");
    full.m_Room = 7;
    CFile* spill = &full;
    EXPECT_EQ(Catch([&] { pBase64_Encode_File(whole, text, &spill); }).cause, kDiskFull);
    EXPECT_EQ(Catch([&] { pBase64_Decode_File(full, input); }).cause, kDiskFull);
}

using Mode = FailingAllocation::Mode;
using Codes = std::set<unsigned>;

// The codes of all the reports that an operation gives while its allocations fail.
template <class Operation>
Codes Sweep_Codes(Mode mode, Operation operation) {
    Codes codes;
    const auto run = [&] {
        for (const auto& [code, file] : operation())
            codes.insert(code);
    };
    Sweep_Allocations(run, mode);
    return codes;
}

TEST(Base64File, EveryFailedAllocationOfTheEncoder) {
    const ScratchDirectory folder;
    const std::string path = folder / "source";
    const std::string bytes = Random_Bytes(100'000);
    const std::string expected = "<a>" + Encode_Literally(bytes);
    const auto encode = [&](bool may_spill) {
        ReportRecorder reports;
        MemoryFile source(bytes);
        source.m_Path = path;
        RVString text("<a>");
        CFile* spill = nullptr;
        const Thrown thrown =
            Catch([&] { pBase64_Encode_File(source, text, may_spill ? &spill : nullptr); });
        const std::string written = spill ? (delete spill, Read_File(path + ".dat")) : Text(text);
        EXPECT_TRUE(written == expected || (thrown.is_memory && expected.starts_with(written)));
        return reports.Take();
    };
    EXPECT_EQ(Sweep_Codes(Mode::kOnce, [&] { return encode(false); }), Codes{23});
    EXPECT_EQ(Sweep_Codes(Mode::kFromThereOn, [&] { return encode(false); }), Codes());
    EXPECT_FALSE(fs::exists(path + ".dat"));
    EXPECT_EQ(Sweep_Codes(Mode::kOnce, [&] { return encode(true); }), Codes());
    EXPECT_TRUE(fs::exists(path + ".dat"));
    EXPECT_EQ(Sweep_Codes(Mode::kFromThereOn, [&] { return encode(true); }), Codes());
}

TEST(Base64File, EveryFailedAllocationOfTheDecoder) {
    const ScratchDirectory folder;
    const std::string path = folder / "t";
    const std::string bytes = Random_Bytes(1'000'000);
    const std::string text = Encode_Literally(bytes);
    const auto decode = [&](bool in_file) {
        // The test's own texts are made while memory is there.
        const AFX_ALLOC_HOOK failing = AfxSetAllocHook(nullptr);
        ReportRecorder reports;
        Write_File(path, text);
        MemoryFile target;
        RVString input = in_file ? Reference(path) : To_RVString(text);
        AfxSetAllocHook(failing);
        EXPECT_EQ(Catch([&] { pBase64_Decode_File(target, input); }).cause, -1);
        const bool whole = target.m_Bytes == bytes;
        EXPECT_TRUE(whole || (in_file && target.m_Bytes.empty() && fs::exists(path)));
        return reports.Take();
    };
    for (const Mode mode : {Mode::kOnce, Mode::kFromThereOn}) {
        EXPECT_EQ(Sweep_Codes(mode, [&] { return decode(false); }), Codes{23});
        EXPECT_EQ(Sweep_Codes(mode, [&] { return decode(true); }), (Codes{23, 28}));
    }
}

}  // namespace
