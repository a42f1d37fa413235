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
// Whether a character separates the levels of paths that callers hand in.
constexpr bool Is_Path_Separator(char character) noexcept {
    return character == kPathSeparator;
}
#else
inline constexpr char kPathSeparator = '/';
constexpr bool Is_Path_Separator(char character) noexcept {
    return character == kPathSeparator || character == '\\';
}
#endif

}  // namespace rv
