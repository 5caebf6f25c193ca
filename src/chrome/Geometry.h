// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QRect>
#include <cmath>

#include "platform/Image.h"
#include "platform/Screens.h"

/// The product's points and rectangles as the toolkit's, and back.
namespace vantorel {

[[nodiscard]] inline Point toPoint(const QPointF& point) { return {point.x(), point.y()}; }

[[nodiscard]] inline Rect toRect(const QRect& rect) {
  return {static_cast<double>(rect.x()), static_cast<double>(rect.y()),
          static_cast<double>(rect.width()), static_cast<double>(rect.height())};
}

[[nodiscard]] inline QRectF toQRectF(const Rect& rect) {
  return {rect.x, rect.y, rect.width, rect.height};
}

/// The nearest whole point.
[[nodiscard]] inline QPoint toQPoint(Point point) {
  return {static_cast<int>(std::lround(point.x)), static_cast<int>(std::lround(point.y))};
}

[[nodiscard]] inline QSize toQSize(Size size) {
  return {static_cast<int>(std::lround(size.width)), static_cast<int>(std::lround(size.height))};
}

/// Its size to the nearest point, its position rounded down: a frame that is centred on half a
/// point always moves the same way.
[[nodiscard]] inline QRect toQRect(const Rect& rect) {
  return {QPoint(static_cast<int>(std::floor(rect.x)), static_cast<int>(std::floor(rect.y))),
          toQSize({rect.width, rect.height})};
}

/// The nearest place on a whole pixel, of which a point has `scale`.
[[nodiscard]] inline double onPixel(double value, double scale) {
  return std::round(value * scale) / scale;
}

}  // namespace vantorel
