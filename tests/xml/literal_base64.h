// The Base64 codec once more, a character at a time and with nothing in common with the library:
// what the tests and the fuzz targets hold it against.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace rv_test {

inline constexpr std::string_view kLiteralAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The place in the alphabet, -1 for a character outside of it.
inline int Literal_Index(char character) {
    const std::size_t place = kLiteralAlphabet.find(character);
    return place < kLiteralAlphabet.size() ? static_cast<int>(place) : -1;
}

// By bits: eight of each byte in a row, cut into sixes.
inline std::string Encode_Literally(std::string_view bytes) {
    std::string text;
    int index = 0;
    int bits = 0;
    const auto add_bit = [&](int bit) {
        index = index * 2 + bit;
        if (++bits < 6) return;
        text += kLiteralAlphabet[static_cast<std::size_t>(index)];
        index = bits = 0;
    };
    for (const char byte : bytes)
        for (int bit = 7; bit >= 0; --bit)
            add_bit(byte >> bit & 1);
    while (bits > 0)
        add_bit(0);
    text.append((4 - text.size() % 4) % 4, '=');
    return text;
}

struct LiteralDecode {
    std::string bytes;
    std::string chunk;  // the last one that was read from a file, up to its first NUL
};

// `in_file`: the text is read from a file, in chunks; else it is held in a string.
inline LiteralDecode Decode_Literally(std::string_view text, bool in_file) {
    constexpr std::size_t kChunk = 1048576;
    LiteralDecode result;
    std::string chunk;
    std::size_t base = 0;
    const auto read_chunk = [&] {
        chunk = in_file ? text.substr(base, kChunk) : text;
        result.chunk = chunk.c_str();
    };
    read_chunk();
    unsigned bits = 0;
    int count = 0;
    const auto end_group = [&](int bytes) {
        for (int byte = 0; byte < bytes; ++byte)
            result.bytes += static_cast<char>(bits >> (16 - 8 * byte));
        bits = 0;
        count = 0;
    };
    std::size_t i = 0;
    for (std::size_t left = text.size(); left > 0; --left) {
        if (chunk[i] == '=') break;
        if (in_file && i > 1048566) {
            base += i;
            read_chunk();
            i = 0;
        }
        const int index = Literal_Index(chunk[i]);
        if (index < 0 && !in_file) break;
        ++i;
        if (index < 0) continue;
        bits = bits << 6 | static_cast<unsigned>(index);
        if (++count == 4) end_group(3);
    }
    bits <<= 6 * (4 - count);
    end_group(count - 1);
    return result;
}

}  // namespace rv_test
