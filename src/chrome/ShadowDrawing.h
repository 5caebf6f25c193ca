// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

class QPainter;
class QSizeF;

namespace vantorel::ShadowDrawing {

/// How something stands out, in points.
struct Height {
  int reach = 0;       // of its shadow on every side
  double drop = 0;     // of the shadow, as of a light above
  double darkest = 0;  // alpha of the shadow at its edge
};
inline constexpr Height ofWindow{40, 8, 0.36};
inline constexpr Height ofCard{12, 3, 0.28};

/// What the shadow of everything with such corners is made of, at `scale` pixels per point.
[[nodiscard]] QImage tile(const Height& height, double cornerRadius, double scale);

/// Draws the shadow around something, on an area of its size and the reach on every side, which
/// measures `size`. Nothing is drawn where the thing itself is.
void draw(QPainter& painter, const QSizeF& size, const QImage& tile);

}  // namespace vantorel::ShadowDrawing
