// Helpers of dialogs, over plain window handles. They run in the thread of the windows; a handle
// that names no window, null included, gives 0 or false and nothing happens.
#pragma once

#include "../frame/export.h"
#include "../platform/winapi.h"

// The low 32 bits of what belongs to the tab at `index`, from 0; 0 for a tab that does not exist.
RVUTILS_API LONG pGet_Tab_Ctrl_Data(HWND tab_control, int index);

// Whether it is a push button, plain or default. Check boxes, radio buttons and the like are none.
RVUTILS_API bool pIs_Push_Button(HWND window);

// Gives `control` the focus and moves the default look of buttons with it: to a push button that
// has the focus, else to the dialog's default button, unless that is disabled. What looked the
// default before does so no longer. Which button the dialog names its default does not change.
// False, with every button as it was, when the control did not get the focus.
RVUTILS_API bool pSet_Dialog_Focus(HWND control);
