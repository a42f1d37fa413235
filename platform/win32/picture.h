// Pictures of windows.
#pragma once

#include "../export.h"
#include "window.h"

namespace rv {

// Paints what has to be painted of a window that is shown and of all that is inside of it, as
// UpdateWindow does, and writes a picture of it all, with frames, to a PNG file.
//
// `path`: see path.h; a file there is replaced. Of children that overlap, the later one is in
// front. False on failure: ERROR_INVALID_WINDOW_HANDLE for what is no window of this thread, or has
// ended by being painted; ERROR_INVALID_PARAMETER for one that is hidden or has no size;
// ERROR_NOT_ENOUGH_MEMORY; what CreateFileA and WriteFile tell, with no file left.
[[nodiscard]] RVPLATFORM_API bool Write_Picture(HWND window, LPCSTR path) noexcept;

}  // namespace rv
