// Messages that have a name.
#pragma once

#include "../export.h"
#include "types.h"

// The number of the message `name`, in which case does not count: from 0xC000 to 0xFFFF, and the
// same for the same name as long as the process lives. 0 on failure: ERROR_INVALID_PARAMETER for no
// name, or one of more than 255 characters; ERROR_NOT_ENOUGH_MEMORY, also when there are no more
// numbers. Any thread.
[[nodiscard]] RVPLATFORM_API UINT RegisterWindowMessageA(LPCSTR name) noexcept;
