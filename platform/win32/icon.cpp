// Icons and cursors, and images out of files.
#include "icon.h"

#include <cstring>
#include <new>

#include "cursor.h"
#include "error.h"
#include "file.h"
#include "gdi_object.h"
#include "handle.h"
#include "resource_table.h"

namespace {

using rv::FileImage;
using rv::IconKind;
using rv::Pixels;

class IconObject final : public rv::GdiObject {
public:
    IconObject(IconKind kind, const FileImage& image) noexcept
        : m_Kind(kind),
          m_Hot{image.hot_x, image.hot_y},
          m_Colors(rv::Room_For(image.width, image.height)),
          m_Mask(rv::Room_For(image.width, image.height)) {
        if (!Is_Whole()) return;
        rv::Read_Pixels(image, m_Colors.begin());
        rv::Read_Mask(image, m_Mask.begin());
        if (kind == IconKind::kCursor) return;
        m_Hot[0] = image.width / 2;
        m_Hot[1] = image.height / 2;
    }

    bool Is_Whole() const noexcept { return m_Colors.block && m_Mask.block; }

    const IconKind m_Kind;
    int m_Hot[2];
    bool m_IsShared = false;
    const Pixels m_Colors;
    const Pixels m_Mask;
};

template <class Handle>
Handle Refuse(DWORD error) noexcept {
    SetLastError(error);
    return {};
}

constexpr int kUsualWidth = 32;

// Null, with the error set, for bytes that are no such file, and without memory.
std::unique_ptr<IconObject> Read_Icon(std::string_view file, IconKind kind) noexcept {
    FileImage image;
    if (rv::Find_Icon(rv::Bytes_Of(file), kind, kUsualWidth, image))
        return Refuse<std::unique_ptr<IconObject>>(ERROR_INVALID_DATA);
    std::unique_ptr<IconObject> icon(new (std::nothrow) IconObject(kind, image));
    if (!icon || !icon->Is_Whole())
        return Refuse<std::unique_ptr<IconObject>>(ERROR_NOT_ENOUGH_MEMORY);
    return icon;
}

HICON Load_Shared(std::span<rv::IconResource> table, LPCSTR name, IconKind kind) noexcept {
    rv::IconResource* const resource = rv::Find_Resource(table, name);
    if (!resource) return nullptr;
    rv::GdiObjects objects;
    if (resource->shared) return resource->shared;
    std::unique_ptr<IconObject> icon = Read_Icon(resource->file, kind);
    if (!icon) return nullptr;
    icon->m_IsShared = true;
    resource->shared = static_cast<HICON>(objects.Add(std::move(icon)));
    return resource->shared;
}

HBITMAP Add_Copy(rv::GdiObjects& objects, const Pixels& pixels) noexcept {
    Pixels copy = rv::Room_For(pixels.width, pixels.height);
    if (!copy.block) return Refuse<HBITMAP>(ERROR_NOT_ENOUGH_MEMORY);
    std::memcpy(copy.begin(), pixels.begin(), pixels.Bytes());
    return static_cast<HBITMAP>(objects.Add(rv::Make_Bitmap_Object(std::move(copy))));
}

class FileHandle {
public:
    explicit FileHandle(const char* path) noexcept
        : m_Handle(CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                               OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {}
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle() {
        if (Is_Open()) CloseHandle(m_Handle);
    }

    bool Is_Open() const noexcept { return m_Handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const noexcept { return m_Handle; }

private:
    const HANDLE m_Handle;
};

// The whole file, or null with the error set.
rv::HeapText Read_File(const char* path, DWORD& size) noexcept {
    constexpr LONGLONG kLargest = LONGLONG{256} << 20;
    const FileHandle file(path);
    LARGE_INTEGER length;
    if (!file.Is_Open() || !GetFileSizeEx(file.Get(), &length)) return nullptr;
    if (length.QuadPart > kLargest) return Refuse<rv::HeapText>(ERROR_INVALID_DATA);
    size = static_cast<DWORD>(length.QuadPart);
    rv::HeapText bytes(static_cast<char*>(rv::Heap_Allocate(size)));
    if (!bytes) return Refuse<rv::HeapText>(ERROR_NOT_ENOUGH_MEMORY);
    return ReadFile(file.Get(), bytes.get(), size, &size, nullptr) ? std::move(bytes) : nullptr;
}

HANDLE Make_Icon(std::string_view file, IconKind kind) noexcept {
    std::unique_ptr<IconObject> icon = Read_Icon(file, kind);
    return icon ? rv::GdiObjects().Add(std::move(icon)) : nullptr;
}

}  // namespace

void rv::End_Shared_Icons(std::span<IconResource> table) noexcept {
    GdiObjects objects;
    for (IconResource& resource : table) {
        if (!resource.shared) continue;
        objects.End(*objects.Find<IconObject>(resource.shared));
        resource.shared = nullptr;
    }
}

HICON LoadIconA(HINSTANCE module, LPCSTR name) noexcept {
    return Load_Shared(module ? module->icons : std::span<rv::IconResource>(), name,
                       IconKind::kIcon);
}

HCURSOR LoadCursorA(HINSTANCE module, LPCSTR name) noexcept {
    if (!module) return rv::System_Cursor(name);
    return Load_Shared(module->cursors, name, IconKind::kCursor);
}

BOOL DestroyIcon(HICON icon) noexcept {
    rv::GdiObjects objects;
    auto* const object = objects.Find<IconObject>(icon);
    if (!object) return FALSE;
    if (!object->m_IsShared) objects.End(*object);
    return TRUE;
}

BOOL DestroyCursor(HCURSOR cursor) noexcept {
    return DestroyIcon(cursor);
}

BOOL GetIconInfo(HICON icon, ICONINFO* info) noexcept {
    if (!info) return Refuse<BOOL>(ERROR_INVALID_PARAMETER);
    rv::GdiObjects objects;
    const auto* const object = objects.Find<IconObject>(icon);
    if (!object) return FALSE;
    HBITMAP const mask = Add_Copy(objects, object->m_Mask);
    HBITMAP const colors = mask ? Add_Copy(objects, object->m_Colors) : nullptr;
    if (!colors) {
        if (mask) objects.End(*objects.Find<rv::BitmapObject>(mask));
        return FALSE;
    }
    *info = {object->m_Kind == IconKind::kIcon, static_cast<DWORD>(object->m_Hot[0]),
             static_cast<DWORD>(object->m_Hot[1]), mask, colors};
    return TRUE;
}

HANDLE LoadImageA(HINSTANCE module, LPCSTR path, UINT type, int width, int height,
                  UINT flags) noexcept {
    if (module || !path || type > IMAGE_CURSOR || width || height ||
        (flags & ~LR_DEFAULTSIZE) != LR_LOADFROMFILE)
        return Refuse<HANDLE>(ERROR_INVALID_PARAMETER);
    DWORD size = 0;
    const rv::HeapText bytes = Read_File(path, size);
    if (!bytes) return nullptr;
    const std::string_view file(bytes.get(), size);
    if (type == IMAGE_BITMAP) return rv::Make_Bitmap(file);
    return Make_Icon(file, type == IMAGE_ICON ? IconKind::kIcon : IconKind::kCursor);
}
