// The mouse's cursor: here it is only kept, each thread has its own. Null, as at first, is none.
#pragma once

#include "../export.h"
#include "module.h"
#include "types.h"

// The system's own cursor for LoadCursorA without a module. It has no picture here.
#define IDC_WAIT MAKEINTRESOURCEA(32514)

// Gives the cursor before.
RVPLATFORM_API HCURSOR SetCursor(HCURSOR cursor) noexcept;
[[nodiscard]] RVPLATFORM_API HCURSOR GetCursor() noexcept;

namespace rv {

// The system's cursor of a number; null with ERROR_RESOURCE_NAME_NOT_FOUND for one that is not
// there.
[[nodiscard]] HCURSOR System_Cursor(LPCSTR name) noexcept;

}  // namespace rv
