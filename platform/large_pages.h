// Large memory pages for large blocks.
#pragma once

#include <cstddef>

namespace rv {

#if defined(_WIN32)
// Windows gives large pages to those with a right to them alone.
inline void Prefer_Large_Pages(void*, std::size_t) noexcept {}
#else
// Asks for large pages behind a block of memory, which then is touched for the first time at a
// tenth of the cost. Small blocks are left alone, and so is what the system will not do.
void Prefer_Large_Pages(void* block, std::size_t bytes) noexcept;
#endif

}  // namespace rv
