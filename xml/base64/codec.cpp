// Chooses the kernel.
#include "codec.h"

#include <array>

namespace rv::base64 {
namespace {

struct Choice {
    std::array<Codec, 2> m_Codecs{};
    std::size_t m_Count = 0;

    Choice() noexcept {
        if (const Codec* const avx2 = Avx2_Codec()) m_Codecs[m_Count++] = *avx2;
        m_Codecs[m_Count++] = kScalarCodec;
    }
};

}  // namespace

std::span<const Codec> Codecs() noexcept {
    static const Choice choice;
    return {choice.m_Codecs.data(), choice.m_Count};
}

const Codec& Best_Codec() noexcept {
    return Codecs().front();
}

}  // namespace rv::base64
