// What a bitmap shows, as lines of text.
#pragma once

#include <RVUtils/winapi.h>

#include <cstdint>
#include <string>
#include <vector>

namespace rv_test {

// One letter a pixel: B for black, w for white, r for red, b for blue, ? for any other colour; a
// line a row.
inline std::string Picture_Of(const std::vector<std::uint32_t>& pixels, std::size_t width) {
    std::string picture;
    for (const std::uint32_t pixel : pixels) {
        switch (pixel & 0xFFFFFF) {
            case 0x000000:
                picture += 'B';
                break;
            case 0xFFFFFF:
                picture += 'w';
                break;
            case 0xFF0000:
                picture += 'r';
                break;
            case 0x0000FF:
                picture += 'b';
                break;
            default:
                picture += '?';
        }
        if (picture.size() % (width + 1) == width) picture += '\n';
    }
    return picture;
}

// "(none)" when it is no bitmap.
inline std::string Picture_Of(HBITMAP bitmap) {
    BITMAP facts;
    if (!GetObjectA(bitmap, sizeof facts, &facts)) return "(none)";
    BITMAPINFO info = {};
    info.bmiHeader = {
        sizeof info.bmiHeader, facts.bmWidth, -facts.bmHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    const auto width = static_cast<std::size_t>(facts.bmWidth);
    std::vector<std::uint32_t> pixels(width * static_cast<std::size_t>(facts.bmHeight));
    HDC const context = CreateCompatibleDC(nullptr);
    const int rows = GetDIBits(context, bitmap, 0, static_cast<UINT>(facts.bmHeight), pixels.data(),
                               &info, DIB_RGB_COLORS);
    DeleteDC(context);
    return rows == facts.bmHeight ? Picture_Of(pixels, width) : "(none)";
}

}  // namespace rv_test
