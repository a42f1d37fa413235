// The Base64 kernels: whole groups of 3 bytes and 4 characters, nothing else.
//
// What a group that is not whole means, which characters end a text and which are skipped is
// decided above.
#pragma once

#include <cstddef>
#include <span>

namespace rv::base64 {

// The standard alphabet. Each table of each kernel is made from it.
inline constexpr char kAlphabet[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// One implementation. All of them give the same bytes. Any thread.
struct Codec {
    const char* m_Name;

    // Writes the 4 * `groups` characters that stand for 3 * `groups` bytes.
    void (*m_Encode)(const unsigned char* bytes, std::size_t groups, char* text);

    // Decodes groups from the front, up to the first one with a character outside the alphabet, and
    // gives their number, at most `groups`. `bytes` has room for 3 * `groups`; what lies in it
    // behind the decoded bytes is undefined.
    std::size_t (*m_Decode)(const char* text, std::size_t groups, unsigned char* bytes);
};

extern const Codec kScalarCodec;

// Null where the processor has no such instructions.
[[nodiscard]] const Codec* Avx2_Codec() noexcept;

// All that run on this processor, the fastest first.
[[nodiscard]] std::span<const Codec> Codecs() noexcept;

// The fastest one, found out once.
[[nodiscard]] const Codec& Best_Codec() noexcept;

}  // namespace rv::base64
