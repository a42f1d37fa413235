#include "image_list.h"

#include <cstring>

#include "error.h"
#include "gdi_object.h"
#include "image_list_object.h"

namespace {

using rv::ImageListObject;

constexpr int kLargest = 32767;
constexpr std::uint32_t kOpaque = 0xFF000000;

HIMAGELIST Make_List(rv::Pixels&& pixels, int width, int height) noexcept {
    std::unique_ptr<rv::GdiObject> list(new (std::nothrow)
                                            ImageListObject(std::move(pixels), width, height));
    return static_cast<HIMAGELIST>(rv::GdiObjects().Add(std::move(list)));
}

HIMAGELIST Refuse(DWORD error) noexcept {
    SetLastError(error);
    return nullptr;
}

// Opaque but for the pixels of one colour, which become 0.
void Mask(const rv::Pixels& pixels, COLORREF mask) noexcept {
    const std::uint32_t hidden = (mask & 0xFF) << 16 | (mask & 0xFF00) | (mask >> 16 & 0xFF);
    const std::size_t count = pixels.Bytes() / sizeof(std::uint32_t);
    for (std::size_t index = 0; index < count; ++index) {
        const std::uint32_t color = pixels.begin()[index] & ~kOpaque;
        pixels.begin()[index] = color == hidden ? 0 : color | kOpaque;
    }
}

}  // namespace

HIMAGELIST ImageList_Create(int width, int height, UINT, int, int) noexcept {
    if (width < 1 || width > kLargest || height < 1 || height > kLargest)
        return Refuse(ERROR_INVALID_PARAMETER);
    return Make_List({}, width, height);
}

HIMAGELIST ImageList_LoadImageA(HINSTANCE module, LPCSTR name, int width, int, COLORREF mask, UINT,
                                UINT) noexcept {
    if (width < 1) return Refuse(ERROR_INVALID_PARAMETER);
    HBITMAP const bitmap = LoadBitmapA(module, name);
    if (!bitmap) return nullptr;
    rv::Pixels copy;
    {
        rv::GdiObjects objects;
        if (const auto* const found = objects.Find<rv::BitmapObject>(bitmap)) {
            copy = rv::Room_For(found->m_Pixels.width, found->m_Pixels.height);
            if (copy.block) std::memcpy(copy.begin(), found->m_Pixels.begin(), copy.Bytes());
        }
    }
    DeleteObject(bitmap);
    if (!copy.block) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    Mask(copy, mask);
    const int height = copy.height;
    return Make_List(std::move(copy), width, height);
}

BOOL ImageList_Destroy(HIMAGELIST list) noexcept {
    rv::GdiObjects objects;
    auto* const found = objects.Find<ImageListObject>(list);
    if (found) objects.End(*found);
    return found != nullptr;
}

BOOL ImageList_GetIconSize(HIMAGELIST list, int* width, int* height) noexcept {
    rv::GdiObjects objects;
    const auto* const found = objects.Find<ImageListObject>(list);
    if (!found) return FALSE;
    *width = found->m_Width;
    *height = found->m_Height;
    return TRUE;
}

int ImageList_GetImageCount(HIMAGELIST list) noexcept {
    rv::GdiObjects objects;
    const auto* const found = objects.Find<ImageListObject>(list);
    return found ? found->m_Pixels.width / found->m_Width : 0;
}
