#include "brush.h"

#include <iterator>

#include "gdi_object.h"

namespace {

// White lines are seen on the face of controls, as dark ones are.
constexpr COLORREF kColors[] = {
    0xC8D0D4, 0xA56E3A, 0x6A240A, 0x808080, 0xC8D0D4, 0xFFFFFF, 0x000000, 0x000000,
    0x000000, 0xFFFFFF, 0xC8D0D4, 0xC8D0D4, 0x808080, 0x6A240A, 0xFFFFFF, 0xC8D0D4,
    0x808080, 0x808080, 0x000000, 0xC8D0D4, 0xFFFFFF, 0x404040, 0xC8D0D4, 0x000000,
};

// The system's brushes are the numbers of their colours, plus one. No object has such a handle.
constexpr std::uintptr_t kFirstObject = 0x10000;

bool Is_Color(int index) noexcept {
    return index >= 0 && index < static_cast<int>(std::size(kColors));
}

}  // namespace

DWORD GetSysColor(int index) noexcept {
    return Is_Color(index) ? kColors[index] : 0;
}

HBRUSH GetSysColorBrush(int index) noexcept {
    return Is_Color(index) ? reinterpret_cast<HBRUSH>(std::intptr_t{index} + 1) : nullptr;
}

HBRUSH CreateSolidBrush(COLORREF color) noexcept {
    std::unique_ptr<rv::GdiObject> brush(new (std::nothrow) rv::BrushObject(color));
    return static_cast<HBRUSH>(rv::GdiObjects().Add(std::move(brush)));
}

COLORREF rv::Color_Of(HBRUSH brush) noexcept {
    const auto number = reinterpret_cast<std::uintptr_t>(brush);
    if (number < kFirstObject) {
        const int index = static_cast<int>(number) - 1;
        return Is_Color(index) ? kColors[index] : CLR_INVALID;
    }
    GdiObjects objects;
    const auto* const found = objects.Find<BrushObject>(brush);
    return found ? found->m_Color : CLR_INVALID;
}
