// Pixels that windows are painted on.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "../heap.h"
#include "window.h"

namespace rv {

class ImageListObject;

using Color = std::uint32_t;  // 0x00RRGGBB

[[nodiscard]] constexpr Color Swapped(std::uint32_t color) noexcept {
    return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}

// What is drawn outside of it, or of `clip`, goes nowhere. Nothing here throws.
class Surface {
public:
    // White all over where the size is another one than before. False without memory, or for more
    // than 67 million pixels; it then has none.
    [[nodiscard]] bool Set_Size(int width, int height) noexcept;

    [[nodiscard]] int Width() const noexcept { return m_Width; }
    [[nodiscard]] int Height() const noexcept { return m_Height; }
    [[nodiscard]] RECT Place() const noexcept { return {0, 0, m_Width, m_Height}; }
    [[nodiscard]] const Color* Row(int y) const noexcept { return Begin_Of(y); }
    void Set_Pixel(int x, int y, Color color) noexcept { Begin_Of(y)[x] = color; }

    void Fill(const RECT& place, Color color, const RECT& clip) noexcept;
    // One line, from its upper left corner.
    void Draw_Text(int x, int y, std::string_view text, Color color, const RECT& clip) noexcept;
    void Draw_Image(int x, int y, const ImageListObject& images, int image,
                    const RECT& clip) noexcept;
    // All of another one.
    void Copy(int x, int y, const Surface& from, const RECT& clip) noexcept;

private:
    Color* Begin_Of(int y) const noexcept { return m_Pixels.get() + std::ptrdiff_t{y} * m_Width; }

    int m_Width = 0;
    int m_Height = 0;
    std::unique_ptr<Color[], HeapDeleter> m_Pixels;
};

}  // namespace rv
