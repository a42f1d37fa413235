// Images as PNG files.
#pragma once

#include <cstdint>

#include "growing_array.h"
#include "surface.h"

namespace rv {

// The bytes of a file with the pixels of a surface that has some, three bytes each. False without
// memory, with what there was as it was or in part.
[[nodiscard]] bool Encode_Png(const Surface& surface, GrowingArray<std::uint8_t>& file) noexcept;

}  // namespace rv
