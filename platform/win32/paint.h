// How the built-in classes paint themselves.
#pragma once

#include <string_view>

#include "caption.h"
#include "device_context.h"
#include "window_object.h"

namespace rv {

// The answer to WM_PAINT, for as long as one lives.
class Painting {
public:
    explicit Painting(Window& window) noexcept : m_Window(window.Handle()) {
        BeginPaint(m_Window, &m_Record);
    }
    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;
    ~Painting() { EndPaint(m_Window, &m_Record); }

    [[nodiscard]] HDC Context() const noexcept { return m_Record.hdc; }

private:
    HWND const m_Window;
    PAINTSTRUCT m_Record;
};

[[nodiscard]] inline bool Is_Disabled(const Window& window) noexcept {
    return (window.m_Style & WS_DISABLED) != 0;
}

// Lets the window's parent choose the colours, and gives the brush of the background.
HBRUSH Ask_Colors(Window& window, UINT message, HDC context) noexcept;

void Fill(HDC context, const RECT& place, int system_color) noexcept;

// A line of one pixel, inside of `place`.
void Draw_Frame(HDC context, const RECT& place, int system_color) noexcept;

enum class Align { kLeft, kCenter, kRight };

// Of the format of a column or a heading.
[[nodiscard]] Align Align_Of(int format) noexcept;

// One line, in the middle of the height; three dots stand for what there is no room for. The
// character at `marked` is underlined.
void Draw_Line(HDC context, const RECT& place, std::string_view text, Align align,
               std::size_t marked = Caption::kNone) noexcept;

// As many lines as there are, broken between words, from the top.
void Draw_Lines(HDC context, const RECT& place, std::string_view text, Align align,
                std::size_t marked = Caption::kNone) noexcept;

inline constexpr int kBox = 13;  // width and height of the box that a check stands in

// The box, from its upper left corner.
void Draw_Check_Box(HDC context, int x, int y, bool is_checked, int mark_color) noexcept;

// A small figure from its upper left corner: rows with a blank between them, a hash for each pixel.
void Draw_Figure(HDC context, int x, int y, std::string_view rows, int system_color) noexcept;

}  // namespace rv
