// Bitmaps, and the table of all objects that have such handles.
#include "bitmap.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "error.h"
#include "gdi_object.h"
#include "resource_table.h"

namespace {

class MemoryContext final : public rv::GdiObject {};

constexpr std::size_t kBuckets = 256;
rv::GdiObject* g_Buckets[kBuckets];
// Beyond the numbers that stand for resources.
std::uintptr_t g_NextHandle = 0x10000;

rv::GdiObject*& Bucket_Of(const void* handle) noexcept {
    return g_Buckets[reinterpret_cast<std::uintptr_t>(handle) % kBuckets];
}

int Refuse(DWORD error) noexcept {
    SetLastError(error);
    return 0;
}

bool Is_Whole_Copy(const rv::Pixels& pixels, UINT start, UINT lines, const void* bits,
                   const BITMAPINFO* info, UINT usage) noexcept {
    if (!bits || !info || usage != DIB_RGB_COLORS || start != 0) return false;
    const BITMAPINFOHEADER& header = info->bmiHeader;
    return header.biSize == sizeof header && header.biWidth == pixels.width &&
           (header.biHeight == pixels.height || header.biHeight == -pixels.height) &&
           lines == static_cast<UINT>(pixels.height) && header.biPlanes == 1 &&
           header.biBitCount == 32 && header.biCompression == BI_RGB;
}

}  // namespace

rv::GdiObject::~GdiObject() = default;

std::mutex rv::GdiObjects::s_Mutex;

HANDLE rv::GdiObjects::Add(std::unique_ptr<GdiObject> object) noexcept {
    if (!object) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    object->m_Handle = reinterpret_cast<HANDLE>(g_NextHandle++);
    GdiObject*& bucket = Bucket_Of(object->m_Handle);
    object->m_Next = bucket;
    bucket = object.get();
    return object.release()->m_Handle;
}

rv::GdiObject* rv::GdiObjects::Find_Any(const void* handle) noexcept {
    GdiObject* object = Bucket_Of(handle);
    while (object && object->m_Handle != handle)
        object = object->m_Next;
    if (!object) SetLastError(ERROR_INVALID_HANDLE);
    return object;
}

void rv::GdiObjects::End(GdiObject& object) noexcept {
    GdiObject** at = &Bucket_Of(object.m_Handle);
    while (*at != &object)
        at = &(*at)->m_Next;
    *at = object.m_Next;
    delete &object;
}

rv::Pixels rv::Room_For(int width, int height) noexcept {
    Pixels pixels;
    pixels.width = width;
    pixels.height = height;
    pixels.block.reset(Heap_Allocate(pixels.Bytes()));
    return pixels;
}

std::unique_ptr<rv::GdiObject> rv::Make_Bitmap_Object(Pixels&& pixels) noexcept {
    return std::unique_ptr<GdiObject>(new (std::nothrow) BitmapObject(std::move(pixels)));
}

HBITMAP rv::Make_Bitmap(std::string_view file) noexcept {
    FileImage image;
    if (Find_Bitmap(Bytes_Of(file), image)) {
        SetLastError(ERROR_INVALID_DATA);
        return nullptr;
    }
    Pixels pixels = Room_For(image.width, image.height);
    if (!pixels.block) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    Read_Pixels(image, pixels.begin());
    return static_cast<HBITMAP>(GdiObjects().Add(Make_Bitmap_Object(std::move(pixels))));
}

HBITMAP LoadBitmapA(HINSTANCE module, LPCSTR name) noexcept {
    const auto table = module ? module->bitmaps : std::span<const rv::BitmapResource>();
    const rv::BitmapResource* const found = rv::Find_Resource(table, name);
    return found ? rv::Make_Bitmap(found->file) : nullptr;
}

BOOL DeleteObject(HGDIOBJ object) noexcept {
    rv::GdiObjects objects;
    auto* const found = objects.Find<rv::GdiObject>(object);
    if (!dynamic_cast<rv::BitmapObject*>(found) && !dynamic_cast<rv::BrushObject*>(found)) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    objects.End(*found);
    return TRUE;
}

int GetObjectA(HGDIOBJ object, int size, LPVOID buffer) noexcept {
    constexpr int kSize = sizeof(BITMAP);
    rv::GdiObjects objects;
    const auto* const bitmap = objects.Find<rv::BitmapObject>(object);
    if (!bitmap || !buffer) return bitmap ? kSize : 0;
    if (size < kSize) return Refuse(ERROR_INVALID_PARAMETER);
    const rv::Pixels& pixels = bitmap->m_Pixels;
    *static_cast<BITMAP*>(buffer) = {0, pixels.width, pixels.height, pixels.width * 4,
                                     1, 32,           nullptr};
    return kSize;
}

HDC CreateCompatibleDC(HDC) noexcept {
    std::unique_ptr<rv::GdiObject> context(new (std::nothrow) MemoryContext);
    return static_cast<HDC>(rv::GdiObjects().Add(std::move(context)));
}

BOOL DeleteDC(HDC context) noexcept {
    rv::GdiObjects objects;
    auto* const found = objects.Find<MemoryContext>(context);
    if (found) objects.End(*found);
    return found != nullptr;
}

int GetDIBits(HDC context, HBITMAP bitmap, UINT start, UINT lines, LPVOID bits, BITMAPINFO* info,
              UINT usage) noexcept {
    rv::GdiObjects objects;
    if (!objects.Find<MemoryContext>(context)) return 0;
    const auto* const found = objects.Find<rv::BitmapObject>(bitmap);
    if (!found) return 0;
    const rv::Pixels& pixels = found->m_Pixels;
    if (!Is_Whole_Copy(pixels, start, lines, bits, info, usage))
        return Refuse(ERROR_INVALID_PARAMETER);
    const std::size_t row = static_cast<std::size_t>(pixels.width) * 4;
    const bool top_down = info->bmiHeader.biHeight < 0;
    for (int y = 0; y < pixels.height; ++y) {
        const int to = top_down ? y : pixels.height - 1 - y;
        std::memcpy(static_cast<char*>(bits) + static_cast<std::size_t>(to) * row,
                    pixels.begin() + static_cast<std::size_t>(y) * row / 4, row);
    }
    return pixels.height;
}
