// SPDX-License-Identifier: MIT
#include "chrome/PopoverPlacement.h"

#include <algorithm>

namespace vantorel {
namespace {

constexpr double gap = 8;     // between the anchor and the popover
constexpr double margin = 6;  // to the edges of the area

/// `start` moved so that `length` fits between the margins; the beginning counts more than the end.
double within(double start, double length, double areaStart, double areaLength) {
  const double last = areaStart + areaLength - margin - length;
  return std::max(areaStart + margin, std::min(start, last));
}

}  // namespace

Rect popoverFrame(const Rect& anchor, PopoverEdge edge, double width, double height,
                  const Rect& area) {
  const double x = edge == PopoverEdge::right ? anchor.maxX() + gap : anchor.x - gap - width;
  const double y = anchor.midY() - height / 2;
  return {within(x, width, area.x, area.width), within(y, height, area.y, area.height), width,
          height};
}

}  // namespace vantorel
