// What the handle of an image list stands for.
#pragma once

#include "gdi_object.h"

namespace rv {

class ImageListObject final : public GdiObject {
public:
    ImageListObject(Pixels&& pixels, int width, int height) noexcept
        : m_Pixels(std::move(pixels)), m_Width(width), m_Height(height) {}

    const Pixels m_Pixels;  // the images side by side; the top byte is 0 where one is transparent
    const int m_Width;      // of one image
    const int m_Height;
};

}  // namespace rv
