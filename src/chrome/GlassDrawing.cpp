// SPDX-License-Identifier: MIT
#include "chrome/GlassDrawing.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "chrome/VantorelTheme.h"

namespace vantorel::GlassDrawing {
namespace {

// The rim tells the panel from a window of the same colour behind it.
constexpr double rimAlphaOnLight = 0.2;
constexpr double rimAlphaOnDark = 0.22;

}  // namespace

void draw(QPainter& painter, const QRectF& bounds, double cornerRadius, const GlassFinish& finish,
          const QPalette& palette) {
  const bool dark = VantorelTheme::isDark(palette);
  const QColor rim = VantorelTheme::labelWash(palette, dark ? rimAlphaOnDark : rimAlphaOnLight);
  QColor veil = VantorelTheme::window(palette);
  veil.setAlphaF(static_cast<float>(finish.veilAlpha));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  if (finish.outline == GlassFinish::Outline::shaped) {
    // Every pixel at the jagged edge has the colour of the rim.
    painter.fillRect(bounds, veil);
    painter.fillRect(bounds, rim);
    painter.setBrush(veil);
    painter.drawRoundedRect(bounds.adjusted(1, 1, -1, -1), cornerRadius - 1, cornerRadius - 1);
    return;
  }
  painter.setBrush(veil);
  painter.drawRoundedRect(bounds, cornerRadius, cornerRadius);
  constexpr double half = 0.5;
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(rim, 1));
  painter.drawRoundedRect(bounds.adjusted(half, half, -half, -half), cornerRadius - half,
                          cornerRadius - half);
}

QRegion outline(const QSize& size, double cornerRadius) {
  // Row by row, since regions made of polygons leave out their right and lower edges.
  const int rows = static_cast<int>(std::ceil(cornerRadius));
  QRegion region(QRect({0, 0}, size).adjusted(0, rows, 0, -rows));
  for (int row = 0; row < rows; ++row) {
    constexpr double middleOfPixel = 0.5;
    const double fromCentre = cornerRadius - row - middleOfPixel;
    const double half =
        std::sqrt(std::max(0.0, cornerRadius * cornerRadius - fromCentre * fromCentre));
    const int inset = static_cast<int>(std::lround(cornerRadius - half));
    region += QRect(inset, row, size.width() - 2 * inset, 1);
    region += QRect(inset, size.height() - 1 - row, size.width() - 2 * inset, 1);
  }
  return region;
}

}  // namespace vantorel::GlassDrawing
