// What the handles of images stand for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

#include "../heap.h"
#include "../image_file.h"
#include "bitmap.h"
#include "brush.h"
#include "nothrow_object.h"

namespace rv {

// Pixels, rows from the top down, each 0xAARRGGBB; the top byte may be anything.
struct Pixels {
    std::uint32_t* begin() const noexcept { return static_cast<std::uint32_t*>(block.get()); }
    std::size_t Bytes() const noexcept {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
               sizeof(std::uint32_t);
    }

    int width = 0;
    int height = 0;
    std::unique_ptr<void, HeapDeleter> block;
};

// Room for the pixels of an image; `block` is null without memory.
[[nodiscard]] Pixels Room_For(int width, int height) noexcept;

// Base of the things that such handles stand for.
class GdiObject : public NothrowObject {
public:
    GdiObject() = default;
    GdiObject(const GdiObject&) = delete;
    GdiObject& operator=(const GdiObject&) = delete;
    virtual ~GdiObject();

private:
    friend class GdiObjects;

    HANDLE m_Handle = nullptr;
    GdiObject* m_Next = nullptr;
};

class BitmapObject final : public GdiObject {
public:
    explicit BitmapObject(Pixels&& pixels) noexcept : m_Pixels(std::move(pixels)) {}

    const Pixels m_Pixels;
};

class BrushObject final : public GdiObject {
public:
    explicit BrushObject(COLORREF color) noexcept : m_Color(color) {}

    const COLORREF m_Color;
};

// Null without memory.
[[nodiscard]] std::unique_ptr<GdiObject> Make_Bitmap_Object(Pixels&& pixels) noexcept;

// Makes a bitmap of the bytes of a whole file. Null with the error set.
[[nodiscard]] HBITMAP Make_Bitmap(std::string_view file) noexcept;

inline FileBytes Bytes_Of(std::string_view file) noexcept {
    return {reinterpret_cast<const std::uint8_t*>(file.data()), file.size()};
}

// All such objects of the process by their handles, for as long as one of these lives: it holds
// their lock. No handle is used twice.
class GdiObjects {
public:
    GdiObjects() noexcept : m_Lock(s_Mutex) {}

    // Takes the object over. Null for null, which stands for no memory, with the error set.
    [[nodiscard]] HANDLE Add(std::unique_ptr<GdiObject> object) noexcept;
    // The object behind a handle, if it is of this kind. Null with ERROR_INVALID_HANDLE.
    template <class Kind>
    [[nodiscard]] Kind* Find(const void* handle) noexcept {
        return dynamic_cast<Kind*>(Find_Any(handle));
    }
    // Ends an object that Find gave.
    void End(GdiObject& object) noexcept;

private:
    GdiObject* Find_Any(const void* handle) noexcept;

    static std::mutex s_Mutex;

    const std::lock_guard<std::mutex> m_Lock;
};

}  // namespace rv
