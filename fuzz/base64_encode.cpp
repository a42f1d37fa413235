// Bytes to Base64 text and back, in reads of any size, to the string and to a spill file: the text
// is the literal one, the bytes come back, and all kernels agree.
#include <RVUtils/XmlParser.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "../xml/base64/codec.h"
// What the library does is to be covered, not what it is held against.
#pragma clang attribute push(__attribute__((no_sanitize("coverage"))), apply_to = function)
#include "xml/literal_base64.h"
#pragma clang attribute pop
#include "xml/memory_file.h"
#include "xml/xml_support.h"

namespace {

void Check(bool right) {
    if (!right) std::abort();
}

// Encodes an exact copy of the whole groups, so that a sanitizer sees a byte too many.
std::string Encode_Groups(const rv::base64::Codec& codec, const std::string& bytes) {
    const std::size_t groups = bytes.size() / 3;
    const std::vector<unsigned char> exact(bytes.begin(),
                                           bytes.begin() + static_cast<int>(3 * groups));
    std::vector<char> text(4 * groups);
    codec.m_Encode(exact.data(), groups, text.data());
    return {text.begin(), text.end()};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    const std::size_t most_at_once = data[0] + 1U;
    const bool spills = data[1] % 2 == 1;
    // Some are repeated beyond the encoder's block.
    const std::string once(reinterpret_cast<const char*>(data) + 2, size - 2);
    std::string bytes = once;
    while (data[1] >= 0xF0 && bytes.size() < 30'000)
        bytes += once;
    const std::string expected = rv_test::Encode_Literally(bytes);

    rv_test::MemoryFile source(bytes);
    source.m_MostAtOnce = most_at_once == 256 ? bytes.size() : most_at_once;
    rv_test::MemoryFile file;
    CFile* spill = &file;
    RVString text("<a>");
    pBase64_Encode_File(source, text, spills ? &spill : nullptr);
    Check(rv_test::Text(text) == (spills ? "<a>" : "<a>" + expected));
    Check(file.m_Bytes == (spills ? expected : ""));

    rv_test::MemoryFile target;
    RVString input = rv_test::To_RVString(expected);
    pBase64_Decode_File(target, input);
    Check(target.m_Bytes == bytes);
    for (const rv::base64::Codec& codec : rv::base64::Codecs())
        Check(Encode_Groups(codec, bytes) == expected.substr(0, bytes.size() / 3 * 4));
    return 0;
}
