#include "picture.h"

#include "edge.h"
#include "error.h"
#include "file.h"
#include "handle.h"
#include "owned_text.h"
#include "png.h"
#include "rectangle.h"
#include "scroll_bars.h"
#include "text_metrics.h"
#include "window_object.h"
#include "window_place.h"
#include "window_state.h"
#include "window_update.h"

namespace {

using rv::Surface;
using rv::Window;

constexpr int kCaptionFrame = 3;
constexpr int kTextIndent = 4;

bool Refuse(DWORD error) noexcept {
    SetLastError(error);
    return false;
}

bool Is_Shown_In(const Window& window, const Window& root) noexcept {
    const Window* at = &window;
    while (at != &root && (at->m_Style & WS_VISIBLE))
        at = at->Parent();
    return at == &root;
}

void Paint(Window& root) noexcept {
    for (Window* at = &root; at && !root.Has_Ended();) {
        const rv::WindowInUse use(*at);
        UpdateWindow(at->Handle());
        // One that ended leaves no way to the next one.
        at = at->Has_Ended() ? &root : at->Behind(root);
    }
}

rv::Color System_Color(int index) noexcept {
    return rv::Swapped(GetSysColor(index));
}

// Where a window and its inside are in the picture, and what of both can be seen.
struct Place {
    RECT outer;
    RECT inner;
    RECT clip;
};

Place Place_In(const Window& window, const Window& root) noexcept {
    const POINT start = rv::Corner_On_Screen(root);
    const RECT root_inner = rv::Inner_Place_Of(root);
    // From the corner of the root's inside to that of its frame.
    const int x = root_inner.left - root.m_Place.left - start.x;
    const int y = root_inner.top - root.m_Place.top - start.y;
    const POINT corner = rv::Corner_On_Screen(window);
    const RECT inner = rv::Moved(rv::Inside_Of(window), corner.x + x, corner.y + y);
    const RECT told = rv::Inner_Place_Of(window);
    const RECT outer = rv::Moved(window.m_Place, inner.left - told.left, inner.top - told.top);
    RECT clip = outer;
    for (const Window* at = &window; at != &root;) {
        at = at->Parent();
        const POINT above = rv::Corner_On_Screen(*at);
        clip = rv::Intersection(clip, rv::Moved(rv::Inside_Of(*at), above.x + x, above.y + y));
    }
    return {outer, inner, clip};
}

void Draw_Title(Surface& picture, const Window& window, const Place& place) noexcept {
    const auto& [outer, inner, clip] = place;
    picture.Fill(outer, System_Color(COLOR_BTNFACE), clip);
    rv::Draw_Edge(picture, outer, EDGE_RAISED, BF_RECT, clip);
    RECT bar = rv::Shrunk(outer, kCaptionFrame);
    bar.bottom = bar.top + rv::kCaptionHeight - 1;
    picture.Fill(bar, System_Color(COLOR_ACTIVECAPTION), clip);
    picture.Draw_Text(bar.left + kTextIndent, bar.top + (rv::Height_Of(bar) - rv::kLineHeight) / 2,
                      rv::View_Of(window.m_Text.get()), System_Color(COLOR_CAPTIONTEXT),
                      rv::Intersection(clip, bar));
}

void Draw(Surface& picture, const Window& window, const Window& root) noexcept {
    const Place place = Place_In(window, root);
    if ((window.m_Style & WS_CAPTION) == WS_CAPTION)
        Draw_Title(picture, window, place);
    else if (window.m_Style & WS_BORDER)
        picture.Fill(place.outer, System_Color(COLOR_WINDOWFRAME), place.clip);
    if (window.m_ExtendedStyle & WS_EX_CLIENTEDGE) {
        const RECT edge = rv::Shrunk(rv::With_Scroll_Bars(window, place.inner), -2);
        rv::Draw_Edge(picture, edge, EDGE_SUNKEN, BF_RECT, place.clip);
    }
    picture.Copy(place.inner.left, place.inner.top, window.m_Surface,
                 rv::Intersection(place.clip, place.inner));
    rv::Draw_Scroll_Bars(picture, window, place.inner, place.clip);
}

bool Write(LPCSTR path, const rv::GrowingArray<std::uint8_t>& bytes) noexcept {
    HANDLE const file =
        CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    DWORD written = 0;
    const bool is_written =
        WriteFile(file, bytes.begin(), static_cast<DWORD>(bytes.Size()), &written, nullptr);
    const DWORD error = GetLastError();
    const bool is_closed = CloseHandle(file) != FALSE;
    if (is_written && is_closed) return true;
    DeleteFileA(path);
    return Refuse(error);
}

}  // namespace

bool rv::Write_Picture(HWND window, LPCSTR path) noexcept {
    Window* const root = Window_Of(window);
    if (!root) return false;
    if (!IsWindowVisible(window) || Is_Empty(root->m_Place)) return Refuse(ERROR_INVALID_PARAMETER);
    const WindowInUse use(*root);
    Paint(*root);
    if (root->Has_Ended()) return Refuse(ERROR_INVALID_WINDOW_HANDLE);
    Surface picture;
    if (!picture.Set_Size(Width_Of(root->m_Place), Height_Of(root->m_Place)))
        return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    for (const Window* at = root; at; at = at->Behind(*root)) {
        if (Is_Shown_In(*at, *root)) Draw(picture, *at, *root);
    }
    GrowingArray<std::uint8_t> file;
    if (!Encode_Png(picture, file)) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    return Write(path, file);
}
