// What separates the levels of a path on this platform.
//
// Paths that callers hand in may use the platform's own form; on Linux the layer also takes
// backslashes and the drive letter C: (see win32/path.h). Paths that the layer hands out are in
// native form.
#pragma once

namespace rv {

#if defined(_WIN32)
// The separator of paths that are built.
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

}  // namespace rv
