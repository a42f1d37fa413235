// One instance of an application at a time.
#pragma once

#include "../frame/export.h"
#include "../platform/mfc/CString.h"

// Whether a window of the class `class_name` is open, and brings it to the user when it is: a
// minimised one is restored, and what was active last of it and all that it owns comes forward, so
// that an open dialog is not hidden behind its main window.
//
// `class_name`: of a top-level window, case does not count. Windows of every process of the user
// count, also of the calling one. Where the system refuses to bring a window forward, the result is
// true all the same. Never throws. Any thread.
RVUTILS_API bool pFind_Running_Instance(const CString& class_name) noexcept;
