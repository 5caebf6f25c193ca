// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Screens.h"

namespace vantorel {

enum class PopoverEdge { left, right };

/// Where a popover of `width` and `height` stands beside `anchor`: a little away from that edge,
/// centred on it, and moved as little as it takes to be whole within `area`. All in points.
[[nodiscard]] Rect popoverFrame(const Rect& anchor, PopoverEdge edge, double width, double height,
                                const Rect& area);

}  // namespace vantorel
