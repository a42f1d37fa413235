// Windows.
#pragma once

#include "../export.h"
#include "../winapi.h"
#include "HeapObject.h"

// An object that owns a window, or none. The window ends with the object, and may end before it,
// with its parent; m_hWnd then still holds the handle, and operations find no window behind it.
//
// An object belongs to the thread that made its window. Nothing here throws.
class RVPLATFORM_API CWnd : public rv::HeapObject {
public:
    CWnd() noexcept;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    virtual ~CWnd();

    // Makes the window, of a class that the system knows. `place` is in pixels, of the screen or,
    // with WS_CHILD, of the parent's inside; only without that may `parent` be null. The window
    // ends with its parent; without WS_CHILD, with the one outside of all children that it is in.
    // `id` is a child's; 0 for other windows.
    // FALSE on failure, with the reason for GetLastError: ERROR_INVALID_PARAMETER for an object
    // that has a window, which it keeps.
    virtual BOOL CreateEx(DWORD extended_style, const char* class_name, const char* text,
                          DWORD style, const RECT& place, CWnd* parent, UINT id);
    // FALSE when there was no window.
    virtual BOOL DestroyWindow();

    HWND GetSafeHwnd() const noexcept { return m_hWnd; }

    HWND m_hWnd;  // null without a window
};
