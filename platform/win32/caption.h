// Texts of controls that mark a key: '&' stands before its character, and "&&" for one '&'.
#pragma once

#include <string_view>

#include "../heap.h"

namespace rv {

class Caption {
public:
    static constexpr std::size_t kNone = std::string_view::npos;

    // Of more marks than one, the last counts.
    explicit Caption(std::string_view marked) noexcept;

    // Without the marks; empty without memory. As long as this object lives.
    [[nodiscard]] std::string_view Text() const noexcept { return {m_Text.get(), m_Length}; }

    // Where the marked character begins, or kNone.
    [[nodiscard]] std::size_t Marked() const noexcept { return m_Marked; }

private:
    HeapText m_Text;
    std::size_t m_Length = 0;
    std::size_t m_Marked = kNone;
};

}  // namespace rv
