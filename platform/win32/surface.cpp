#include "surface.h"

#include <algorithm>

#include "font.h"
#include "image_list_object.h"
#include "rectangle.h"

namespace {

// 256 MiB; a window of such a size is a mistake.
constexpr std::size_t kMostPixels = std::size_t{1} << 26;

}  // namespace

bool rv::Surface::Set_Size(int width, int height) noexcept {
    if (width == m_Width && height == m_Height) return true;
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    m_Width = m_Height = 0;
    m_Pixels.reset();
    if (count > kMostPixels) return false;
    m_Pixels.reset(static_cast<Color*>(Heap_Allocate(count * sizeof(Color))));
    if (!m_Pixels) return false;
    std::fill_n(m_Pixels.get(), count, Color{0xFFFFFF});
    m_Width = width;
    m_Height = height;
    return true;
}

void rv::Surface::Fill(const RECT& place, Color color, const RECT& clip) noexcept {
    const RECT filled = Intersection(Intersection(place, clip), Place());
    if (Is_Empty(filled)) return;
    for (int y = filled.top; y < filled.bottom; ++y)
        std::fill_n(Begin_Of(y) + filled.left, rv::Width_Of(filled), color);
}

void rv::Surface::Draw_Text(int x, int y, std::string_view text, Color color,
                            const RECT& clip) noexcept {
    const RECT shown = Intersection(clip, Place());
    while (!text.empty() && x < shown.right) {
        const Glyph& glyph = Glyph_Of(Take_Character(text));
        for (int row = 0; row < kLineHeight; ++row) {
            for (int column = 0; column < glyph.width; ++column) {
                const bool is_set = glyph.rows[static_cast<std::size_t>(row)] >> column & 1;
                if (is_set && Contains(shown, x + column, y + row))
                    Set_Pixel(x + column, y + row, color);
            }
        }
        x += glyph.width + kGlyphGap;
    }
}

void rv::Surface::Draw_Image(int x, int y, const ImageListObject& images, int image,
                             const RECT& clip) noexcept {
    const RECT shown = Intersection(clip, Place());
    const int left = image * images.m_Width;
    if (image < 0 || left + images.m_Width > images.m_Pixels.width) return;
    for (int row = 0; row < images.m_Height; ++row) {
        const std::uint32_t* const pixels =
            images.m_Pixels.begin() + std::ptrdiff_t{row} * images.m_Pixels.width + left;
        for (int column = 0; column < images.m_Width; ++column) {
            const bool is_opaque = pixels[column] >> 24 != 0;
            if (is_opaque && Contains(shown, x + column, y + row))
                Set_Pixel(x + column, y + row, pixels[column] & 0xFFFFFF);
        }
    }
}

void rv::Surface::Copy(int x, int y, const Surface& from, const RECT& clip) noexcept {
    const RECT copied = Intersection(Intersection(Moved(from.Place(), x, y), clip), Place());
    if (Is_Empty(copied)) return;
    for (int row = copied.top; row < copied.bottom; ++row)
        std::copy_n(from.Row(row - y) + (copied.left - x), rv::Width_Of(copied),
                    Begin_Of(row) + copied.left);
}
