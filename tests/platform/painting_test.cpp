// Device contexts: what is drawn, where, and in which colours.
#include "recorded_window.h"

#include <cstring>

#include "allocation_sweep.h"

namespace {

using namespace rv_test;

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

// A window of 200 by 100 pixels, and a context to draw on it.
struct Canvas {
    Canvas() : context(GetDC(top)) { Fill({0, 0, 200, 100}, kBlue); }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() { EXPECT_EQ(ReleaseDC(top, context), 1); }

    void Fill(const RECT& place, COLORREF color) const {
        HBRUSH const brush = CreateSolidBrush(color);
        EXPECT_NE(FillRect(context, &place, brush), 0);
        EXPECT_TRUE(DeleteObject(brush));
    }
    COLORREF At(int x, int y) const { return GetPixel(context, x, y); }
    int Count(const RECT& place, COLORREF color) const {
        int count = 0;
        for (int y = place.top; y < place.bottom; ++y) {
            for (int x = place.left; x < place.right; ++x)
                count += At(x, y) == color;
        }
        return count;
    }

    const RecordedTop top;
    HDC const context;
};

TEST(Painting, FillsWhatIsInside) {
    const Canvas canvas;
    canvas.Fill({190, 90, 300, 300}, kRed);
    canvas.Fill({50, 50, 50, 60}, kRed);
    EXPECT_EQ(canvas.Count({0, 0, 200, 100}, kRed), 100);
    EXPECT_EQ(canvas.At(190, 90), kRed);
    EXPECT_EQ(canvas.At(189, 90), kBlue);
    EXPECT_EQ(canvas.At(0, 100), CLR_INVALID);
}

TEST(Painting, DrawsTheTwoLinesOfAnEdge) {
    const struct {
        const char* why;
        UINT edge;
        int left[2], right[2];  // system colours, from the outside in
    } kRows[] = {
        {"raised",
         EDGE_RAISED,
         {COLOR_3DLIGHT, COLOR_BTNHIGHLIGHT},
         {COLOR_3DDKSHADOW, COLOR_BTNSHADOW}},
        {"sunken",
         EDGE_SUNKEN,
         {COLOR_BTNSHADOW, COLOR_3DDKSHADOW},
         {COLOR_BTNHIGHLIGHT, COLOR_3DLIGHT}},
        {"etched",
         EDGE_ETCHED,
         {COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT},
         {COLOR_BTNHIGHLIGHT, COLOR_BTNSHADOW}},
    };
    const Canvas canvas;
    RECT place = {10, 20, 60, 50};
    for (const auto& row : kRows) {
        canvas.Fill({0, 0, 200, 100}, kBlue);
        EXPECT_TRUE(DrawEdge(canvas.context, &place, row.edge, BF_RECT)) << row.why;
        for (int line = 0; line < 2; ++line) {
            const COLORREF left = GetSysColor(row.left[line]), right = GetSysColor(row.right[line]);
            EXPECT_EQ(canvas.At(10 + line, 35), left) << row.why << line;
            EXPECT_EQ(canvas.At(35, 20 + line), left) << row.why << line;
            EXPECT_EQ(canvas.At(59 - line, 35), right) << row.why << line;
            EXPECT_EQ(canvas.At(35, 49 - line), right) << row.why << line;
        }
        EXPECT_EQ(canvas.Count({12, 22, 58, 48}, kBlue), 46 * 26) << row.why;
        EXPECT_EQ(canvas.At(9, 35), kBlue) << row.why;
        EXPECT_EQ(canvas.At(60, 35), kBlue) << row.why;
    }
}

TEST(Painting, DrawsTextsInTheirColours) {
    const Canvas canvas;
    SIZE size = {};
    EXPECT_TRUE(GetTextExtentPoint32A(canvas.context, "Hills", 5, &size));
    ASSERT_TRUE(size.cx > 10 && size.cx < 90 && size.cy > 5 && size.cy < 40);
    const RECT box = {10, 10, 10 + size.cx, 10 + size.cy};
    const int area = size.cx * size.cy;
    const auto draw = [&](UINT options, const RECT* place) {
        EXPECT_TRUE(ExtTextOutA(canvas.context, 10, 10, options, place, "Hills", 5, nullptr));
    };
    EXPECT_EQ(SetTextColor(canvas.context, kRed), RGB(0, 0, 0));
    EXPECT_EQ(SetBkColor(canvas.context, RGB(0, 255, 0)), RGB(255, 255, 255));
    EXPECT_EQ(GetTextColor(canvas.context), kRed);
    EXPECT_EQ(GetBkColor(canvas.context), RGB(0, 255, 0));
    draw(0, nullptr);
    EXPECT_EQ(canvas.Count(box, kBlue), 0) << "all of what is behind it";
    EXPECT_EQ(canvas.Count({0, 0, 200, 100}, kBlue), 200 * 100 - area);
    const int drawn = canvas.Count(box, kRed);
    EXPECT_TRUE(drawn > 10 && drawn < area / 2);
    canvas.Fill(box, kBlue);
    EXPECT_EQ(SetBkMode(canvas.context, TRANSPARENT), OPAQUE);
    draw(0, nullptr);
    EXPECT_GT(canvas.Count(box, kBlue), area / 2) << "nothing behind it";
    EXPECT_EQ(canvas.Count(box, kRed), drawn);
    canvas.Fill(box, kBlue);
    const RECT half = {10, 0, 10 + size.cx / 2, 100};
    draw(ETO_CLIPPED, &half);
    const int clipped = canvas.Count(box, kRed);
    EXPECT_TRUE(clipped > 0 && clipped < drawn);
    EXPECT_EQ(canvas.Count(half, kRed), clipped);
    const RECT filled = {100, 50, 110, 60};
    EXPECT_TRUE(ExtTextOutA(canvas.context, 0, 0, ETO_OPAQUE, &filled, nullptr, 0, nullptr));
    EXPECT_EQ(canvas.Count({90, 40, 200, 100}, RGB(0, 255, 0)), 100);
}

TEST(Painting, MeasuresWithoutAWindow) {
    HDC const context = GetDC(nullptr);
    LONG before = -1;
    for (const char* text : {"", "i", "im", "imm", "imm,"}) {
        SIZE size = {};
        EXPECT_TRUE(
            GetTextExtentPoint32A(context, text, static_cast<int>(std::strlen(text)), &size));
        EXPECT_GT(size.cx, before) << text;
        before = size.cx;
    }
    ReleaseDC(nullptr, context);
    EXPECT_GT(GetSystemMetrics(SM_CXVSCROLL), 0);
}

int g_Erasures;

LRESULT CALLBACK Paint_Red(HWND window, UINT message, WPARAM first, LPARAM second) {
    RECT inside;
    GetClientRect(window, &inside);
    HBRUSH const red = CreateSolidBrush(kRed);
    LRESULT answer = 0;
    if (message == WM_ERASEBKGND) {
        ++g_Erasures;
        answer = 1;
    } else if (message == WM_PAINT) {
        PAINTSTRUCT painting;
        EXPECT_NE(BeginPaint(window, &painting), nullptr);
        EXPECT_FALSE(painting.fErase);
        FillRect(painting.hdc, &inside, red);
        EXPECT_TRUE(EndPaint(window, &painting));
    } else {
        answer = DefWindowProcA(window, message, first, second);
    }
    DeleteObject(red);
    return answer;
}

TEST(Painting, PaintsNoMoreThanHasToBe) {
    const RecordedTop top;
    HWND const child = Make_Recorded(WS_CHILD | WS_VISIBLE, top, 2);
    SetWindowLongPtrA(child, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Paint_Red));
    UpdateWindow(child);
    HDC const context = GetDC(child);
    const RECT inside = {0, 0, 200, 100}, part = {10, 20, 30, 40};
    for (const bool erases : {false, true}) {
        FillRect(context, &inside, GetSysColorBrush(COLOR_BTNSHADOW));
        g_Erasures = 0;
        InvalidateRect(child, &part, erases);
        UpdateWindow(child);
        EXPECT_EQ(g_Erasures, erases);
        EXPECT_EQ(GetPixel(context, 10, 20), kRed);
        EXPECT_EQ(GetPixel(context, 29, 39), kRed);
        EXPECT_EQ(GetPixel(context, 9, 20), GetSysColor(COLOR_BTNSHADOW));
        EXPECT_EQ(GetPixel(context, 29, 40), GetSysColor(COLOR_BTNSHADOW));
        EXPECT_FALSE(GetUpdateRect(child, nullptr, FALSE));
    }
    ReleaseDC(child, context);
}

TEST(Painting, HasColoursForEveryControl) {
    const struct {
        UINT message;
        int background;
    } kRows[] = {{WM_CTLCOLOREDIT, COLOR_WINDOW},
                 {WM_CTLCOLORLISTBOX, COLOR_WINDOW},
                 {WM_CTLCOLORBTN, COLOR_BTNFACE},
                 {WM_CTLCOLORDLG, COLOR_BTNFACE},
                 {WM_CTLCOLORSTATIC, COLOR_BTNFACE}};
    const Canvas canvas;
    const RECT place = {0, 0, 10, 10};
    for (const auto& row : kRows) {
        SetTextColor(canvas.context, kRed);
        const LRESULT brush =
            DefWindowProcA(canvas.top, row.message, reinterpret_cast<WPARAM>(canvas.context),
                           reinterpret_cast<LPARAM>(canvas.top.window));
        FillRect(canvas.context, &place, reinterpret_cast<HBRUSH>(brush));
        EXPECT_EQ(canvas.At(5, 5), GetSysColor(row.background)) << row.message;
        EXPECT_EQ(GetBkColor(canvas.context), GetSysColor(row.background)) << row.message;
        EXPECT_EQ(GetTextColor(canvas.context), GetSysColor(COLOR_WINDOWTEXT)) << row.message;
    }
}

TEST(Painting, DrawsNothingThroughWhatIsNoContext) {
    HWND ended;
    HDC context;
    {
        const RecordedTop top;
        ended = top;
        context = GetDC(top);
        EXPECT_EQ(ReleaseDC(top, context), 1);
        EXPECT_EQ(ReleaseDC(top, context), 0);
    }
    SIZE size;
    PAINTSTRUCT painting;
    EXPECT_EQ(GetDC(ended), nullptr);
    EXPECT_EQ(BeginPaint(ended, &painting), nullptr);
    EXPECT_EQ(SetTextColor(context, kRed), CLR_INVALID);
    EXPECT_EQ(GetBkColor(context), CLR_INVALID);
    EXPECT_EQ(SetBkMode(context, OPAQUE), 0);
    EXPECT_EQ(GetPixel(context, 0, 0), CLR_INVALID);
    EXPECT_FALSE(ExtTextOutA(context, 0, 0, 0, nullptr, "x", 1, nullptr));
    EXPECT_FALSE(GetTextExtentPoint32A(context, "x", 1, &size));
    HBRUSH const brush = CreateSolidBrush(kRed);
    EXPECT_TRUE(DeleteObject(brush));
    EXPECT_FALSE(DeleteObject(brush));
}

TEST(Painting, SurvivesMissingMemory) {
    const RecordedTop top;
    Sweep_Allocations([&top] {
        HDC const context = GetDC(top);
        HBRUSH const brush = CreateSolidBrush(kRed);
        EXPECT_EQ(context && brush, !FailingAllocation::Failed());
        const RECT place = {0, 0, 10, 10};
        if (context) FillRect(context, &place, brush);
        EXPECT_EQ(ReleaseDC(top, context), context != nullptr);
        EXPECT_EQ(DeleteObject(brush), brush != nullptr);
    });
}

}  // namespace
