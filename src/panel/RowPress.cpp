// SPDX-License-Identifier: MIT
#include "panel/RowPress.h"

#include <cmath>

namespace vantorel {
namespace {

constexpr double dragDistance = 5;

}  // namespace

void RowPress::begin(Point origin) {
  origin_ = origin;
  didDrag_ = false;
}

RowPress::Motion RowPress::moveTo(Point point, Row row) {
  if (!origin_) return Motion::none;
  if (didDrag_) return Motion::drags;
  if (row == Row::notPinned) return Motion::none;
  if (std::hypot(point.x - origin_->x, point.y - origin_->y) <= dragDistance) return Motion::none;
  didDrag_ = true;
  return Motion::startsDrag;
}

RowPress::End RowPress::release(Point point, const Rect& bounds) {
  if (!origin_) return End::nothing;
  origin_.reset();
  if (didDrag_) return End::drop;
  return bounds.contains(point) ? End::click : End::leftRow;
}

void RowPress::cancel() { origin_.reset(); }

void RowPress::reset() { *this = {}; }

}  // namespace vantorel
