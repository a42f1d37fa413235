#include "edge.h"

#include "rectangle.h"

namespace {

struct Line {
    UINT bit;
    int upper_left;
    int lower_right;
};

constexpr Line kOuter[] = {
    {BDR_RAISEDOUTER, COLOR_3DLIGHT, COLOR_3DDKSHADOW},
    {BDR_SUNKENOUTER, COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT},
};
constexpr Line kInner[] = {
    {BDR_RAISEDINNER, COLOR_BTNHIGHLIGHT, COLOR_BTNSHADOW},
    {BDR_SUNKENINNER, COLOR_3DDKSHADOW, COLOR_3DLIGHT},
};

void Draw_Line(rv::Surface& surface, const RECT& place, const Line& line, UINT sides,
               const RECT& clip) noexcept {
    const auto draw = [&](UINT side, const RECT& filled, int color) {
        if (sides & side) surface.Fill(filled, rv::Swapped(GetSysColor(color)), clip);
    };
    const auto& [left, top, right, bottom] = place;
    draw(BF_LEFT, {left, top, left + 1, bottom}, line.upper_left);
    draw(BF_TOP, {left, top, right, top + 1}, line.upper_left);
    draw(BF_RIGHT, {right - 1, top, right, bottom}, line.lower_right);
    draw(BF_BOTTOM, {left, bottom - 1, right, bottom}, line.lower_right);
}

}  // namespace

void rv::Draw_Edge(Surface& surface, const RECT& place, UINT edge, UINT sides,
                   const RECT& clip) noexcept {
    for (const Line& line : kOuter) {
        if (edge & line.bit) Draw_Line(surface, place, line, sides, clip);
    }
    for (const Line& line : kInner) {
        if (edge & line.bit) Draw_Line(surface, Shrunk(place, 1), line, sides, clip);
    }
}
