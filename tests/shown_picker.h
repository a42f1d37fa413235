// Date-time pickers for tests.
#pragma once

#include <RVUtils/CDateTimeCtrl.h>

namespace rv_test {

inline constexpr RECT kPickerPlace = {0, 0, 200, 24};

// A window that others can be children of.
struct ParentWindow : CWnd {
    ParentWindow() { CreateEx(0, DATETIMEPICK_CLASSA, "", WS_POPUP, kPickerPlace, nullptr, 0); }
};

// A picker with the style bits given, in a parent of its own.
struct ShownPicker {
    explicit ShownPicker(DWORD style = 0) { control.Create(style, kPickerPlace, &parent, 1); }

    ParentWindow parent;
    CDateTimeCtrl control;
};

}  // namespace rv_test
