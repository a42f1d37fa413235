// A run of an application with a list whose widths are kept.
//
// usage: tests_list_child PIXELS
// Writes the widths that its columns come up with, drags the border behind the first one so far,
// and ends. Its exit code is the number of references to the settings host that are left.
#include <RVUtils/RVListCtrl.h>
#include <RVUtils/RVResourceLoader.h>
#include <RVUtils/SettingsHost.h>

#include <cstdio>
#include <cstdlib>

namespace {

int Width_Of(const CHeaderCtrl& header, int column) {
    HDITEMA item = {};
    item.mask = HDI_WIDTH;
    header.GetItem(column, &item);
    return item.cxy;
}

void Show_List(IUnknown* host, int pixels) {
    CWnd window;
    window.CreateEx(0, "#32770", "List", WS_POPUP | WS_VISIBLE, {0, 0, 400, 300}, nullptr, 0);
    RVString name("kept");
    RVListCtrl list(host, &name);
    list.Create(LVS_REPORT | WS_VISIBLE, {0, 0, 350, 250}, &window, 1);
    RVResourceLoader loader(nullptr, 0, GetModuleHandleA(nullptr));
    constexpr RV_list_ctrl_columns kColumns[] = {{0, 1, 60, 1}, {1, 1, 70, 1}, {2, 1, 80, 1}};
    list.Init_Columns(loader, 0, RV_column_width_pixels, kColumns, 3);
    const CHeaderCtrl& header = *list.GetHeaderCtrl();
    for (int column = 0; column < 3; ++column)
        std::printf("%d ", Width_Of(header, column));
    const int border = Width_Of(header, 0);
    SendMessageA(header.m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(border, 5));
    SendMessageA(header.m_hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(border + pixels, 5));
    SendMessageA(header.m_hWnd, WM_LBUTTONUP, 0, MAKELPARAM(border + pixels, 5));
    window.DestroyWindow();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 100;
    IUnknown* const host = pCreate_Settings_Host();
    if (!host) return 101;
    Show_List(host, std::atoi(argv[1]));
    return static_cast<int>(host->Release());
}
