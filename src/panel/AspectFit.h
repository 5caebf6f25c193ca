// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/Image.h"
#include "platform/Screens.h"

namespace vantorel {

/// The largest place in the middle of `area` with the proportions of `size`, which may be smaller
/// or larger; nothing for a picture or an area without extent.
[[nodiscard]] std::optional<Rect> aspectFit(Size size, const Rect& area);

}  // namespace vantorel
