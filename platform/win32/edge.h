// Edges that look raised or sunken.
#pragma once

#include "device_context.h"
#include "surface.h"

namespace rv {

// As DrawEdge.
void Draw_Edge(Surface& surface, const RECT& place, UINT edge, UINT sides,
               const RECT& clip) noexcept;

}  // namespace rv
