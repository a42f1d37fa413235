// Shows a greeting in the user's language:
//
//     cd examples/translations/language
//     LANG=fi_FI.UTF-8 greeting
//
// The language files are those of the current directory, among others. Where none fits, the items
// that are built in serve.

#include <RVUtils/RVUtils.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "items.h"

namespace {

void Print_Line(RVResourceLoader& items, ULONG id) {
    RVString text;
    if (!items.Load_String(text, id))
        text.Format("(text %u is missing)", static_cast<unsigned>(id));
    std::printf("%s\n", text.GetString());
}

// A sign that is about as dark as the pixel, 0x00RRGGBB.
char Sign_Of(std::uint32_t pixel) {
    const std::uint32_t light = (pixel >> 16 & 0xFF) * 2 + (pixel >> 8 & 0xFF) * 4 + (pixel & 0xFF);
    constexpr char kSigns[] = "#%*+-. ";
    return kSigns[light * (sizeof kSigns - 2) / (0xFF * 7)];
}

void Print_Bitmap(RVResourceLoader& items, ULONG id) {
    CBitmap bitmap;
    BITMAP facts;
    if (!items.Load_Bitmap(bitmap, id) || !GetObjectA(bitmap, sizeof facts, &facts)) return;
    const auto width = static_cast<std::size_t>(facts.bmWidth);
    BITMAPINFO wish = {};
    wish.bmiHeader.biSize = sizeof wish.bmiHeader;
    wish.bmiHeader.biWidth = facts.bmWidth;
    wish.bmiHeader.biHeight = -facts.bmHeight;  // from the top down
    wish.bmiHeader.biPlanes = 1;
    wish.bmiHeader.biBitCount = 32;
    std::vector<std::uint32_t> pixels(width * static_cast<std::size_t>(facts.bmHeight));
    HDC const context = CreateCompatibleDC(nullptr);
    const int rows = GetDIBits(context, bitmap, 0, static_cast<UINT>(facts.bmHeight), pixels.data(),
                               &wish, DIB_RGB_COLORS);
    DeleteDC(context);
    for (std::size_t row = 0; row < static_cast<std::size_t>(rows); ++row) {
        std::string line = "    ";
        for (std::size_t x = 0; x < width; ++x)
            line += Sign_Of(pixels[row * width + x] & 0xFFFFFF);
        std::printf("%s\n", line.c_str());
    }
}

}  // namespace

int main() try {
    RVResourceLoader items;
    RVLanguageManager* manager = nullptr;
    if (!pInit_Language_Support(items, manager, "grtg", Items_Module()))
        items.Set_Config(nullptr, 0, Items_Module());
    Print_Line(items, IDS_TITLE);
    std::printf("\n");
    Print_Line(items, IDS_WELCOME);
    Print_Bitmap(items, IDB_FLAG);
    Print_Line(items, IDS_HELP);
    pCleanup_Language_Support(items, manager);
    return 0;
} catch (CException* error) {
    error->Delete();
    std::fputs("greeting: there is not enough memory\n", stderr);
    return 1;
}
