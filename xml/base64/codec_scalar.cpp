// The kernel without vector instructions: one table look-up does the work of 12 bits on the way in
// and of one character on the way out.
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "codec.h"

// The tables hold bytes in memory order inside of wider numbers.
static_assert(std::endian::native == std::endian::little);

namespace rv::base64 {
namespace {

// Two characters for each 12 bits. 8 KiB, so that both tables stay in the first-level cache.
constexpr auto kPairs = [] {
    std::array<std::uint16_t, 4096> pairs{};
    for (std::size_t bits = 0; bits < pairs.size(); ++bits)
        pairs[bits] = static_cast<std::uint16_t>(kAlphabet[bits >> 6] | kAlphabet[bits & 63] << 8);
    return pairs;
}();

// Set in a decoded group when one of its characters is outside the alphabet.
constexpr std::uint32_t kOutside = 0x8000'0000;

// For each place in a group and each character: the character's bits where they lie in the three
// bytes of the group. A whole group is the four of them put together.
constexpr auto kPlaces = [] {
    std::array<std::array<std::uint32_t, 256>, 4> places{};
    for (std::size_t place = 0; place < places.size(); ++place) {
        places[place].fill(kOutside);
        for (std::uint32_t index = 0; index < 64; ++index) {
            const std::uint32_t group = index << (18 - 6 * place);
            places[place][static_cast<unsigned char>(kAlphabet[index])] =
                (group >> 16 & 0xff) | (group & 0xff00) | (group & 0xff) << 16;
        }
    }
    return places;
}();

std::uint64_t Load_Big_Endian(const unsigned char* bytes) {
    std::uint64_t value;
    std::memcpy(&value, bytes, sizeof value);
    return __builtin_bswap64(value);
}

void Write_Pair(std::uint64_t bits, char* text) {
    std::memcpy(text, &kPairs[bits & 0xfff], 2);
}

// Two groups from the upper six bytes of `bits`.
void Encode_Two(std::uint64_t bits, char* text) {
    Write_Pair(bits >> 52, text);
    Write_Pair(bits >> 40, text + 2);
    Write_Pair(bits >> 28, text + 4);
    Write_Pair(bits >> 16, text + 6);
}

void Encode(const unsigned char* bytes, std::size_t groups, char* text) {
    // Eight bytes are read for six, so a fifth group must stand behind the four.
    for (; groups >= 5; groups -= 4, bytes += 12, text += 16) {
        Encode_Two(Load_Big_Endian(bytes), text);
        Encode_Two(Load_Big_Endian(bytes + 6), text + 8);
    }
    for (; groups > 0; --groups, bytes += 3, text += 4) {
        const std::uint64_t bits =
            std::uint64_t{bytes[0]} << 16 | std::uint64_t{bytes[1]} << 8 | bytes[2];
        Write_Pair(bits >> 12, text);
        Write_Pair(bits, text + 2);
    }
}

std::uint32_t Look_Up(const char* text) {
    return kPlaces[0][static_cast<unsigned char>(text[0])] |
           kPlaces[1][static_cast<unsigned char>(text[1])] |
           kPlaces[2][static_cast<unsigned char>(text[2])] |
           kPlaces[3][static_cast<unsigned char>(text[3])];
}

// Writes four bytes, of which three count.
void Write_Group(std::uint32_t group, unsigned char* bytes) {
    std::memcpy(bytes, &group, sizeof group);
}

std::size_t Decode(const char* text, std::size_t groups, unsigned char* bytes) {
    std::size_t done = 0;
    // Each group is written over the byte in excess of the one before, so a fifth must follow.
    for (; groups - done >= 5; done += 4, text += 16, bytes += 12) {
        const std::uint32_t first = Look_Up(text), second = Look_Up(text + 4),
                            third = Look_Up(text + 8), fourth = Look_Up(text + 12);
        if ((first | second | third | fourth) & kOutside) break;
        Write_Group(first, bytes);
        Write_Group(second, bytes + 3);
        Write_Group(third, bytes + 6);
        Write_Group(fourth, bytes + 9);
    }
    for (; done < groups; ++done, text += 4, bytes += 3) {
        const std::uint32_t group = Look_Up(text);
        if (group & kOutside) break;
        std::memcpy(bytes, &group, 3);
    }
    return done;
}

}  // namespace

constinit const Codec kScalarCodec = {"scalar", &Encode, &Decode};

}  // namespace rv::base64
