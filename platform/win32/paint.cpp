#include "paint.h"

#include <algorithm>

#include "font.h"
#include "header.h"
#include "rectangle.h"

namespace {

using rv::Align;

constexpr std::string_view kDots = "...";
constexpr std::string_view kCheck = "......# .....## #...### ##.###. #####.. .###... ..#....";

// In the colour of the text.
void Underline(HDC context, const RECT& place, int x, int y, std::string_view text) noexcept {
    const RECT line = {x, y + rv::kLineHeight - 1, x + rv::Width_Of(text) - rv::kGlyphGap,
                       y + rv::kLineHeight};
    const RECT shown = rv::Intersection(line, place);
    const COLORREF before = SetBkColor(context, GetTextColor(context));
    if (!rv::Is_Empty(shown)) ExtTextOutA(context, x, y, ETO_OPAQUE, &shown, nullptr, 0, nullptr);
    SetBkColor(context, before);
}

void Draw(HDC context, const RECT& place, int y, std::string_view text, Align align,
          std::size_t marked) noexcept {
    const int room = rv::Width_Of(place) - rv::Width_Of(text);
    int x = place.left;
    if (align == Align::kCenter) x += room / 2;
    if (align == Align::kRight) x += room;
    ExtTextOutA(context, x, y, ETO_CLIPPED, &place, text.data(), static_cast<UINT>(text.size()),
                nullptr);
    if (marked >= text.size()) return;
    std::string_view behind = text.substr(marked);
    static_cast<void>(rv::Take_Character(behind));
    const std::string_view character = text.substr(marked, text.size() - behind.size() - marked);
    Underline(context, place, x + rv::Width_Of(text.substr(0, marked)), y, character);
}

// How many bytes of a text there is room for, in whole characters.
std::size_t Fitting(std::string_view text, int room) noexcept {
    std::size_t fitting = 0;
    int width = 0;
    for (std::string_view rest = text; !rest.empty(); fitting = text.size() - rest.size()) {
        width += rv::Glyph_Of(rv::Take_Character(rest)).width + rv::kGlyphGap;
        if (width > room) break;
    }
    return fitting;
}

// Lines end with a line feed, which may have a carriage return before it.
std::string_view Without_Return(std::string_view line) noexcept {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
}

// The first line of a text that is not empty, as wide as there is room for, but a word at least.
std::string_view First_Line(std::string_view text, int room) noexcept {
    const std::string_view line = text.substr(0, text.find('\n'));
    std::size_t end = line.find(' ');
    if (end == std::string_view::npos) return line;
    while (end != std::string_view::npos) {
        const std::size_t next = line.find(' ', end + 1);
        if (rv::Width_Of(line.substr(0, next)) > room) return line.substr(0, end);
        end = next;
    }
    return line;
}

}  // namespace

HBRUSH rv::Ask_Colors(Window& window, UINT message, HDC context) noexcept {
    const auto first = reinterpret_cast<WPARAM>(context);
    const auto second = reinterpret_cast<LPARAM>(window.Handle());
    LRESULT brush = 0;
    if (window.Parent()) brush = Send(*window.Parent(), message, first, second);
    if (brush == 0) brush = window.Default(message, first, second);
    return reinterpret_cast<HBRUSH>(brush);
}

void rv::Fill(HDC context, const RECT& place, int system_color) noexcept {
    FillRect(context, &place, GetSysColorBrush(system_color));
}

void rv::Draw_Frame(HDC context, const RECT& place, int system_color) noexcept {
    const auto& [left, top, right, bottom] = place;
    Fill(context, {left, top, right, top + 1}, system_color);
    Fill(context, {left, bottom - 1, right, bottom}, system_color);
    Fill(context, {left, top, left + 1, bottom}, system_color);
    Fill(context, {right - 1, top, right, bottom}, system_color);
}

rv::Align rv::Align_Of(int format) noexcept {
    switch (format & HDF_JUSTIFYMASK) {
        case HDF_RIGHT:
            return Align::kRight;
        case HDF_CENTER:
            return Align::kCenter;
        default:
            return Align::kLeft;
    }
}

void rv::Draw_Line(HDC context, const RECT& place, std::string_view text, Align align,
                   std::size_t marked) noexcept {
    const int y = place.top + (Height_Of(place) - kLineHeight) / 2;
    SetBkMode(context, TRANSPARENT);
    if (Width_Of(text) <= Width_Of(place)) return Draw(context, place, y, text, align, marked);
    const std::size_t length = Fitting(text, Width_Of(place) - Width_Of(kDots));
    Draw(context, place, y, text.substr(0, length), Align::kLeft, marked);
    RECT rest = place;
    rest.left += Width_Of(text.substr(0, length));
    Draw(context, rest, y, kDots, Align::kLeft, Caption::kNone);
}

void rv::Draw_Lines(HDC context, const RECT& place, std::string_view text, Align align,
                    std::size_t marked) noexcept {
    SetBkMode(context, TRANSPARENT);
    std::size_t start = 0;
    for (int y = place.top; start < text.size() && y < place.bottom; y += kLineHeight) {
        const std::string_view line = First_Line(text.substr(start), Width_Of(place));
        const bool is_marked = marked != Caption::kNone && marked >= start;
        Draw(context, place, y, Without_Return(line), align,
             is_marked ? marked - start : Caption::kNone);
        // What broke the line goes with it.
        start += line.size() + 1;
    }
}

void rv::Draw_Check_Box(HDC context, int x, int y, bool is_checked, int mark_color) noexcept {
    RECT box = {x, y, x + kBox, y + kBox};
    Fill(context, box, COLOR_WINDOW);
    DrawEdge(context, &box, EDGE_SUNKEN, BF_RECT);
    if (is_checked) Draw_Figure(context, x + 3, y + 3, kCheck, mark_color);
}

void rv::Draw_Figure(HDC context, int x, int y, std::string_view rows, int system_color) noexcept {
    int column = 0;
    for (const char pixel : rows) {
        const int left = x + column++;
        if (pixel == '#') Fill(context, {left, y, left + 1, y + 1}, system_color);
        if (pixel != ' ') continue;
        column = 0;
        ++y;
    }
}
