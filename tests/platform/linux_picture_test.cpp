// Pictures of windows, read back by an independent reader.
#include <filesystem>
#include <random>
#include <vector>

#include "allocation_sweep.h"
#include "image.h"
#include "recorded_window.h"

namespace {

using namespace rv_test;
namespace fs = std::filesystem;

constexpr COLORREF kRed = RGB(255, 0, 0);

struct PictureTest : testing::Test {
    PictureTest() { fs::remove(path); }
    ~PictureTest() override { fs::remove(path); }

    const fs::path path = fs::temp_directory_path() / "rvutils_picture_test.png";
};

void Fill(HWND window, const RECT& place, COLORREF color) {
    HDC const context = GetDC(window);
    HBRUSH const brush = CreateSolidBrush(color);
    FillRect(context, &place, brush);
    DeleteObject(brush);
    ReleaseDC(window, context);
}

TEST_F(PictureTest, HoldsEveryPixel) {
    const RecordedTop top;
    MoveWindow(top, 0, 0, 701, 97, FALSE);
    UpdateWindow(top);
    std::mt19937 random(5);
    for (int count = 0; count < 3000; ++count) {
        const auto number = [&random](unsigned below) {
            return static_cast<LONG>(random() % below);
        };
        const LONG x = number(701), y = number(97);
        // Those of one pixel in between make runs of every length.
        Fill(top, {x, y, x + 1 + number(2) * number(300), y + 1 + number(2)},
             COLORREF(number(1 << 24)));
    }
    ASSERT_TRUE(rv::Write_Picture(top, path.c_str()));
    const Image image(path);
    ASSERT_EQ(image.header.width, 701u);
    ASSERT_EQ(image.header.height, 97u);
    HDC const context = GetDC(top);
    for (int y = 0; y < 97; ++y) {
        for (int x = 0; x < 701; ++x)
            ASSERT_EQ(image.At(unsigned(x), unsigned(y)), GetPixel(context, x, y)) << x << "," << y;
    }
    ReleaseDC(top, context);
}

TEST_F(PictureTest, ShowsWhatIsInsideWithinFrames) {
    const RecordedTop top(WS_VISIBLE | WS_CAPTION);
    MoveWindow(top, 40, 30, 200, 100, FALSE);
    constexpr DWORD kShown = WS_CHILD | WS_VISIBLE;
    HWND const outer = Make_Window(kRecordedClass, kShown | WS_BORDER, top, 1, {10, 10, 60, 40});
    HWND const inner = Make_Window(kRecordedClass, kShown, outer, 1, {40, 20, 90, 90});
    HWND const hidden = Make_Window(kRecordedClass, WS_CHILD, top, 1, {100, 10, 120, 30});
    HWND const in_hidden = Make_Window(kRecordedClass, kShown, hidden, 1, {0, 0, 20, 20});
    for (HWND const window : {top.window, outer, inner, in_hidden}) {
        UpdateWindow(window);
        Fill(window, {0, 0, 300, 300}, window == inner ? kRed : GetSysColor(COLOR_WINDOW));
    }
    ASSERT_TRUE(rv::Write_Picture(top, path.c_str()));
    const Image image(path);
    // A caption and a frame of three pixels, and a line of one.
    constexpr unsigned kLeft = 3 + 10, kTop = 23 + 10;
    const struct {
        const char* why;
        unsigned x, y;
        COLORREF color;
    } kRows[] = {
        {"caption", 150, 10, GetSysColor(COLOR_ACTIVECAPTION)},
        {"inside", 150, 80, GetSysColor(COLOR_WINDOW)},
        {"above the line", kLeft + 20, kTop - 1, GetSysColor(COLOR_WINDOW)},
        {"the line", kLeft + 20, kTop, GetSysColor(COLOR_WINDOWFRAME)},
        {"below the line", kLeft + 20, kTop + 1, GetSysColor(COLOR_WINDOW)},
        {"left of the child", kLeft + 1 + 39, kTop + 1 + 20, GetSysColor(COLOR_WINDOW)},
        {"its corner", kLeft + 1 + 40, kTop + 1 + 20, kRed},
        {"its last place", kLeft + 48, kTop + 28, kRed},
        {"the line at the right", kLeft + 49, kTop + 28, GetSysColor(COLOR_WINDOWFRAME)},
        {"where it is cut off", kLeft + 50, kTop + 28, GetSysColor(COLOR_WINDOW)},
        {"in what is hidden", 3 + 110, 23 + 20, GetSysColor(COLOR_WINDOW)},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(image.At(row.x, row.y), row.color) << row.why;
}

TEST_F(PictureTest, IsWrittenWholeOrNotAtAll) {
    RecordedTop top;
    EXPECT_FALSE(rv::Write_Picture(top, "/missing directory/x.png"));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PATH_NOT_FOUND});
    Sweep_Allocations([&] {
        const bool is_written = rv::Write_Picture(top, path.c_str());
        EXPECT_NE(is_written, FailingAllocation::Failed());
        EXPECT_EQ(fs::exists(path), is_written);
    });
    ShowWindow(top, SW_HIDE);
    EXPECT_FALSE(rv::Write_Picture(top, path.c_str()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    DestroyWindow(top);
    EXPECT_FALSE(rv::Write_Picture(top, path.c_str()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_WINDOW_HANDLE});
}

}  // namespace
