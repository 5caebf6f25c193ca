// SPDX-License-Identifier: MIT
#include "panel/AspectFit.h"

#include <algorithm>

namespace vantorel {

std::optional<Rect> aspectFit(Size size, const Rect& area) {
  // Written so that what is not a number has no extent either.
  const bool extended = size.width > 0 && size.height > 0 && area.width > 0 && area.height > 0;
  if (!extended) return std::nullopt;
  const double scale = std::min(area.width / size.width, area.height / size.height);
  const double width = size.width * scale;
  const double height = size.height * scale;
  return Rect{area.midX() - width / 2, area.midY() - height / 2, width, height};
}

}  // namespace vantorel
