// The kernel for processors with AVX2: 24 bytes and 32 characters a step.
#include "codec.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include <array>
#include <cstdint>

// The instructions are enabled for these functions alone, so that nothing that is shared with other
// sources can come out with them.
#define RV_AVX2 __attribute__((target("avx2")))
#define RV_AVX2_INLINE __attribute__((target("avx2"), always_inline)) inline

namespace rv::base64 {
namespace {

using Bytes16 = std::array<std::uint8_t, 16>;

// The alphabet's runs: within one the distance from index to character is the same.
constexpr std::size_t kUpper = 0, kLower = 26, kDigits = 52, kPlus = 62, kSlash = 63;

constexpr std::uint8_t Distance(std::size_t index) {
    return static_cast<std::uint8_t>(kAlphabet[index] - static_cast<int>(index));
}

// What to add to an index, by its run: 0 for the lower-case letters, 1 to 10 for the digits, 11 and
// 12 for the two signs, 13 for the upper-case letters.
constexpr Bytes16 kToCharacter = [] {
    Bytes16 table{};
    table[0] = Distance(kLower);
    for (std::size_t digit = 1; digit <= 10; ++digit)
        table[digit] = Distance(kDigits);
    table[11] = Distance(kPlus);
    table[12] = Distance(kSlash);
    table[13] = Distance(kUpper);
    return table;
}();

// A character is outside the alphabet when the entries for its two halves share a bit: each upper
// half has the bit of its kind, each lower half the bits of the kinds that it is no member of.
// Upper halves with the same members are of one kind, so that eight bits are enough.
struct Membership {
    Bytes16 m_Upper{};
    Bytes16 m_Lower{};
};
constexpr Membership kMembership = [] {
    std::array<std::uint32_t, 16> members{};
    for (std::size_t index = 0; index < 64; ++index) {
        const auto character = static_cast<unsigned>(kAlphabet[index]);
        members[character >> 4] |= 1U << (character & 15);
    }
    Membership result;
    unsigned kinds = 0;
    for (std::size_t upper = 0; upper < 16; ++upper) {
        std::size_t same = 0;
        while (members[same] != members[upper])
            ++same;
        if (same < upper) {
            result.m_Upper[upper] = result.m_Upper[same];
            continue;
        }
        const auto kind = static_cast<std::uint8_t>(1U << kinds++);
        result.m_Upper[upper] = kind;
        for (std::size_t lower = 0; lower < 16; ++lower)
            if (!(members[upper] >> lower & 1)) result.m_Lower[lower] |= kind;
    }
    return result;
}();

// What to add to a character to get its index, by its upper half; the slash, which shares one with
// the plus, has the unused place below.
constexpr Bytes16 kToIndex = [] {
    Bytes16 table{};
    for (std::size_t index = 0; index < 64; ++index)
        table[static_cast<std::size_t>(kAlphabet[index] >> 4)] =
            static_cast<std::uint8_t>(-Distance(index));
    table['/' >> 4] = static_cast<std::uint8_t>(-Distance(kPlus));
    table[('/' >> 4) - 1] = static_cast<std::uint8_t>(-Distance(kSlash));
    return table;
}();

RV_AVX2_INLINE __m256i Both_Lanes(const Bytes16& table) {
    return _mm256_broadcastsi128_si256(
        _mm_loadu_si128(reinterpret_cast<const __m128i*>(table.data())));
}

// Reads 28 bytes, of which 24 count.
RV_AVX2_INLINE void Encode_Eight(const unsigned char* bytes, char* text) {
    const __m256i lanes = _mm256_inserti128_si256(
        _mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes))),
        _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + 12)), 1);
    // Bytes b0 b1 b2 become b1 b0 b2 b1, so that each index lies whole in one 16-bit half.
    constexpr Bytes16 kSpread = {1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10};
    const __m256i spread = _mm256_shuffle_epi8(lanes, Both_Lanes(kSpread));
    // Two multiplications do the work of four shifts by different widths.
    const __m256i even = _mm256_mulhi_epu16(_mm256_and_si256(spread, _mm256_set1_epi32(0x0fc0fc00)),
                                            _mm256_set1_epi32(0x04000040));
    const __m256i odd = _mm256_mullo_epi16(_mm256_and_si256(spread, _mm256_set1_epi32(0x003f03f0)),
                                           _mm256_set1_epi32(0x01000010));
    const __m256i index = _mm256_or_si256(even, odd);

    const __m256i is_upper = _mm256_cmpgt_epi8(_mm256_set1_epi8(kLower), index);
    const __m256i run = _mm256_or_si256(_mm256_subs_epu8(index, _mm256_set1_epi8(kDigits - 1)),
                                        _mm256_and_si256(is_upper, _mm256_set1_epi8(13)));
    const __m256i characters =
        _mm256_add_epi8(index, _mm256_shuffle_epi8(Both_Lanes(kToCharacter), run));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(text), characters);
}

RV_AVX2_INLINE __m256i Load_Text(const char* text) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text));
}

RV_AVX2_INLINE __m256i Upper_Halves(__m256i text) {
    return _mm256_and_si256(_mm256_srli_epi32(text, 4), _mm256_set1_epi8(0x0f));
}

// Not zero where a character is outside the alphabet.
RV_AVX2_INLINE __m256i Outside(__m256i text) {
    const __m256i lower = _mm256_and_si256(text, _mm256_set1_epi8(0x0f));
    return _mm256_and_si256(
        _mm256_shuffle_epi8(Both_Lanes(kMembership.m_Upper), Upper_Halves(text)),
        _mm256_shuffle_epi8(Both_Lanes(kMembership.m_Lower), lower));
}

// Writes 32 bytes, of which 24 count.
RV_AVX2_INLINE void Decode_Eight(__m256i text, unsigned char* bytes) {
    const __m256i is_slash = _mm256_cmpeq_epi8(text, _mm256_set1_epi8('/'));
    const __m256i place = _mm256_add_epi8(Upper_Halves(text), is_slash);
    const __m256i index = _mm256_add_epi8(text, _mm256_shuffle_epi8(Both_Lanes(kToIndex), place));
    // 6 bits and 6 bits become 12, 12 and 12 become 24.
    const __m256i pairs = _mm256_maddubs_epi16(index, _mm256_set1_epi32(0x01400140));
    const __m256i groups = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
    constexpr Bytes16 kGather = {2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, 0x80, 0x80, 0x80, 0x80};
    const __m256i lanes = _mm256_shuffle_epi8(groups, Both_Lanes(kGather));
    const __m256i whole =
        _mm256_permutevar8x32_epi32(lanes, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes), whole);
}

RV_AVX2 void Encode(const unsigned char* bytes, std::size_t groups, char* text) {
    // One group more than the 32 must be there for the four bytes that are read in excess.
    for (; groups >= 34; groups -= 32, bytes += 96, text += 128)
        for (int step = 0; step < 4; ++step)
            Encode_Eight(bytes + 24 * step, text + 32 * step);
    for (; groups >= 10; groups -= 8, bytes += 24, text += 32)
        Encode_Eight(bytes, text);
    kScalarCodec.m_Encode(bytes, groups, text);
}

RV_AVX2 std::size_t Decode(const char* text, std::size_t groups, unsigned char* bytes) {
    std::size_t done = 0;
    // Three groups more must be there for the eight bytes that are written in excess.
    for (; groups - done >= 35; done += 32, text += 128, bytes += 96) {
        const __m256i first = Load_Text(text), second = Load_Text(text + 32),
                      third = Load_Text(text + 64), fourth = Load_Text(text + 96);
        const __m256i outside = _mm256_or_si256(_mm256_or_si256(Outside(first), Outside(second)),
                                                _mm256_or_si256(Outside(third), Outside(fourth)));
        if (!_mm256_testz_si256(outside, outside)) break;
        Decode_Eight(first, bytes);
        Decode_Eight(second, bytes + 24);
        Decode_Eight(third, bytes + 48);
        Decode_Eight(fourth, bytes + 72);
    }
    for (; groups - done >= 11; done += 8, text += 32, bytes += 24) {
        const __m256i eight = Load_Text(text);
        const __m256i outside = Outside(eight);
        if (!_mm256_testz_si256(outside, outside)) break;
        Decode_Eight(eight, bytes);
    }
    return done + kScalarCodec.m_Decode(text, groups - done, bytes);
}

constinit const Codec kAvx2Codec = {"avx2", &Encode, &Decode};

}  // namespace

const Codec* Avx2_Codec() noexcept {
    return __builtin_cpu_supports("avx2") ? &kAvx2Codec : nullptr;
}

}  // namespace rv::base64

#else

namespace rv::base64 {

const Codec* Avx2_Codec() noexcept {
    return nullptr;
}

}  // namespace rv::base64

#endif
