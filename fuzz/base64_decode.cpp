// Base64 text in a string and in a file: the bytes, the text that is left and the end of the file
// are those of the literal walk, wherever the chunks cut it; and all kernels agree.
#include <RVUtils/XmlParser.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "../xml/base64/codec.h"
// What the library does is to be covered, not what it is held against.
#pragma clang attribute push(__attribute__((no_sanitize("coverage"))), apply_to = function)
#include "xml/literal_base64.h"
#pragma clang attribute pop
#include "xml/memory_file.h"
#include "xml/xml_support.h"

namespace {

constexpr std::size_t kStride = 1048567;

void Check(bool right) {
    if (!right) std::abort();
}

// Decodes an exact copy of the whole groups, so that a sanitizer sees a byte too many.
std::string Decode_Groups(const rv::base64::Codec& codec, std::string_view text) {
    const std::size_t groups = text.size() / 4;
    const std::vector<char> exact(text.begin(), text.begin() + static_cast<int>(4 * groups));
    std::vector<unsigned char> bytes(3 * groups);
    const std::size_t decoded = codec.m_Decode(exact.data(), groups, bytes.data());
    return {bytes.begin(), bytes.begin() + static_cast<int>(3 * decoded)};
}

void Check_String(const std::string& text) {
    rv_test::MemoryFile target;
    RVString input = rv_test::To_RVString(text);
    if (input.Left(7).CompareNoCase("FILE://") == 0) return;
    pBase64_Decode_File(target, input);
    Check(target.m_Bytes == rv_test::Decode_Literally(text, false).bytes);
    Check(rv_test::Text(input) == text);
}

void Check_File(const std::string& text) {
    static const rv_test::ScratchDirectory s_Scratch;
    const std::string path = s_Scratch / "text";
    rv_test::Write_File(path, text);
    rv_test::MemoryFile target;
    RVString input = rv_test::Reference(path);
    pBase64_Decode_File(target, input);
    const rv_test::LiteralDecode expected = rv_test::Decode_Literally(text, true);
    Check(target.m_Bytes == expected.bytes);
    Check(rv_test::Text(input) == expected.chunk);
    Check(!std::filesystem::exists(path));
}

// The text behind as many characters as put one of its first bytes at the end of a chunk.
std::string Cut_At(std::size_t place, std::string_view text) {
    static const std::string s_Filler = [] {
        std::string filler;
        while (filler.size() < kStride)
            filler.append(999, 'Z').append("\n");
        return filler;
    }();
    return s_Filler.substr(0, kStride - place).append(text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::size_t place = data[0];
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    for (const rv::base64::Codec& codec : rv::base64::Codecs())
        Check(Decode_Groups(codec, text) == Decode_Groups(rv::base64::kScalarCodec, text));
    Check_String(text);
    // Few inputs get a chunk in front of them, because those take by far the most time.
    Check_File(place < 0xF0 ? text : Cut_At(place - 0xF0, text));
    return 0;
}
