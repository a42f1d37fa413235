// There is no screen: a picture of the window is written.
#include "../run.h"

#include <cstdio>

namespace {

int Refuse(const std::string& why) {
    std::fprintf(stderr, "workbench: %s\n", why.c_str());
    return 1;
}

bool Click_Header(const workbench::Window& window, const std::string& column) {
    if (column.size() != 1 || column < "0" || column > "3") return false;
    const POINT middle = window.Header_Middle(column[0] - '0');
    const LPARAM place = MAKELPARAM(middle.x, middle.y);
    SendMessageA(window.Header(), WM_LBUTTONDOWN, MK_LBUTTON, place);
    SendMessageA(window.Header(), WM_LBUTTONUP, 0, place);
    return true;
}

}  // namespace

int workbench::Run(const Window& window, const std::vector<std::string>& arguments) {
    if (arguments.empty()) return Refuse("name a picture to be written: there is no screen");
    for (std::size_t at = 1; at < arguments.size(); ++at) {
        if (!Click_Header(window, arguments[at]))
            return Refuse("columns are 0 to 3, not \"" + arguments[at] + '"');
    }
    const std::string& path = arguments[0];
    if (!rv::Write_Picture(window.m_hWnd, path.c_str()))
        return Refuse("the picture cannot be written to " + path);
    return 0;
}
