// SPDX-License-Identifier: MIT
#include "chrome/ShadowDrawing.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace vantorel::ShadowDrawing {
namespace {

constexpr double underRim = 1;  // pixels of it below the smooth edge

/// From the edge of a rounded rectangle, negative inside it.
double distance(const QPointF& point, const QRectF& rect, double radius) {
  const double x = std::abs(point.x() - rect.center().x()) - rect.width() / 2 + radius;
  const double y = std::abs(point.y() - rect.center().y()) - rect.height() / 2 + radius;
  return std::hypot(std::max(x, 0.0), std::max(y, 0.0)) + std::min(std::max(x, y), 0.0) - radius;
}

/// Along each edge the shadow is the same between the corners.
int cornerPixels(const Height& height, double cornerRadius, double scale) {
  return static_cast<int>(std::ceil((height.reach + height.drop + cornerRadius) * scale));
}

}  // namespace

QImage tile(const Height& height, double cornerRadius, double scale) {
  const auto [reach, drop, darkest] = height;
  const int side = 2 * cornerPixels(height, cornerRadius, scale) + 1;
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  const QRectF window =
      QRectF(0, 0, side / scale, side / scale).adjusted(reach, reach, -reach, -reach);
  const QRectF shadow = window.translated(0, drop);
  for (int y = 0; y < side; ++y) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < side; ++x) {
      constexpr double middle = 0.5;
      const QPointF point((x + middle) / scale, (y + middle) / scale);
      const double depth =
          1 - std::max(0.0, distance(point, shadow, cornerRadius)) / (reach - drop);
      const double beside = distance(point, window, cornerRadius) * scale + underRim + middle;
      const double alpha =
          darkest * std::pow(std::max(0.0, depth), 2) * std::clamp(beside, 0.0, 1.0);
      line[x] = qRgba(0, 0, 0, static_cast<int>(std::lround(alpha * 255)));
    }
  }
  return image;
}

void draw(QPainter& painter, const QSizeF& size, const QImage& tile) {
  // The corners as they are, and between them the middle row and column drawn out.
  const double scale = tile.devicePixelRatio();
  const int corner = (tile.width() - 1) / 2;
  const double inset = corner / scale;
  const double xs[] = {0, inset, size.width() - inset, size.width()};
  const double ys[] = {0, inset, size.height() - inset, size.height()};
  const int from[] = {0, corner, corner + 1, tile.width()};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      const bool isWindow = row == 1 && column == 1;
      if (isWindow) continue;
      painter.drawImage(
          QRectF(QPointF(xs[column], ys[row]), QPointF(xs[column + 1], ys[row + 1])), tile,
          QRectF(QPointF(from[column], from[row]), QPointF(from[column + 1], from[row + 1])));
    }
  }
}

}  // namespace vantorel::ShadowDrawing
