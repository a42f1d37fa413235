// The scans that carry the reader's speed: whole vectors where the processor has them.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace rv {

// Bytes that mean something outside of a section: "<", ">" and the three that are dropped.
inline bool Is_Special(char byte) noexcept {
    return byte == '<' || byte == '>' || byte == '\t' || byte == '\n' || byte == '\r';
}

#if defined(__SSE2__)

// Sixteen bytes at a time, as a mask with bit i for byte i.
struct XmlVector {
    static constexpr std::size_t kSize = 16;

    static XmlVector Load(const char* at) noexcept {
        return {_mm_loadu_si128(reinterpret_cast<const __m128i*>(at))};
    }
    void Store(char* at) const noexcept {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(at), m_Bytes);
    }
    std::uint32_t Equal(char byte) const noexcept {
        return Mask(_mm_cmpeq_epi8(m_Bytes, _mm_set1_epi8(byte)));
    }
    std::uint32_t Equal(XmlVector other) const noexcept {
        return Mask(_mm_cmpeq_epi8(m_Bytes, other.m_Bytes));
    }
    std::uint32_t Specials() const noexcept {
        // "<" and ">" differ in one bit; tab and line feed are neighbours.
        const __m128i angle =
            _mm_cmpeq_epi8(_mm_or_si128(m_Bytes, _mm_set1_epi8(2)), _mm_set1_epi8('>'));
        const __m128i below = _mm_sub_epi8(m_Bytes, _mm_set1_epi8('\t'));
        const __m128i tab_or_feed = _mm_cmpeq_epi8(_mm_min_epu8(below, _mm_set1_epi8(1)), below);
        const __m128i carriage = _mm_cmpeq_epi8(m_Bytes, _mm_set1_epi8('\r'));
        return Mask(_mm_or_si128(angle, _mm_or_si128(tab_or_feed, carriage)));
    }
    // The bytes that a section's markers and their search can end at.
    std::uint32_t Section_Specials() const noexcept {
        return Mask(_mm_or_si128(_mm_cmpeq_epi8(m_Bytes, _mm_setzero_si128()),
                                 _mm_or_si128(_mm_cmpeq_epi8(m_Bytes, _mm_set1_epi8('[')),
                                              _mm_cmpeq_epi8(m_Bytes, _mm_set1_epi8(']')))));
    }

    __m128i m_Bytes;

private:
    static std::uint32_t Mask(__m128i bytes) noexcept {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(bytes));
    }
};

#else

// Eight bytes, one after the other, for processors without a vector unit that we know.
struct XmlVector {
    static constexpr std::size_t kSize = 8;

    static XmlVector Load(const char* at) noexcept {
        XmlVector vector;
        std::memcpy(vector.m_Bytes, at, kSize);
        return vector;
    }
    void Store(char* at) const noexcept { std::memcpy(at, m_Bytes, kSize); }
    std::uint32_t Equal(char byte) const noexcept {
        return Mask([byte](char mine, std::size_t) { return mine == byte; });
    }
    std::uint32_t Equal(const XmlVector& other) const noexcept {
        return Mask([&other](char mine, std::size_t i) { return mine == other.m_Bytes[i]; });
    }
    std::uint32_t Specials() const noexcept {
        return Mask([](char mine, std::size_t) { return Is_Special(mine); });
    }
    std::uint32_t Section_Specials() const noexcept {
        return Mask(
            [](char mine, std::size_t) { return mine == '\0' || mine == '[' || mine == ']'; });
    }

    char m_Bytes[kSize];

private:
    template <class Test>
    std::uint32_t Mask(Test test) const noexcept {
        std::uint32_t mask = 0;
        for (std::size_t i = 0; i < kSize; ++i)
            mask |= (test(m_Bytes[i], i) ? 1u : 0u) << i;
        return mask;
    }
};

#endif

// The first special byte at or behind `at`, or `end`.
inline const char* Find_Special(const char* at, const char* end) noexcept {
    for (; end - at >= static_cast<std::ptrdiff_t>(XmlVector::kSize); at += XmlVector::kSize)
        if (const std::uint32_t mask = XmlVector::Load(at).Specials())
            return at + std::countr_zero(mask);
    while (at != end && !Is_Special(*at))
        ++at;
    return at;
}

}  // namespace rv
