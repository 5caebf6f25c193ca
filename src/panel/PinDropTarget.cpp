// SPDX-License-Identifier: MIT
#include "panel/PinDropTarget.h"

#include <algorithm>

namespace vantorel {
namespace {

constexpr double edgeHeight = 24;
constexpr double stepLength = 6;

}  // namespace

std::optional<PinDropTarget> pinDropTarget(const std::vector<DropRow>& rows, Uuid dragged,
                                           Point pointer) {
  const auto found = std::find_if(rows.begin(), rows.end(),
                                  [&](const DropRow& row) { return row.frame.contains(pointer); });
  if (found == rows.end() || !found->pinned || found->id == dragged) return std::nullopt;
  return PinDropTarget{static_cast<std::size_t>(found - rows.begin()),
                       pointer.y <= found->frame.midY() ? DropPlace::before : DropPlace::after};
}

double dragScrollStep(const DragView& view, double pointerY) {
  if (pointerY < edgeHeight) return -std::min(stepLength, std::max(0.0, view.offset));
  const double hidden = view.pinsBottom - view.offset - view.height;
  if (pointerY > view.height - edgeHeight) return std::clamp(hidden, 0.0, stepLength);
  return 0;
}

}  // namespace vantorel
