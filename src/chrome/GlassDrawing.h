// SPDX-License-Identifier: MIT
#pragma once

#include <QRegion>

#include "chrome/GlassFinish.h"

class QPainter;
class QPalette;
class QRectF;
class QSize;

namespace vantorel::GlassDrawing {

/// Draws a rounded background of the window's colour with a thin rim.
void draw(QPainter& painter, const QRectF& bounds, double cornerRadius, const GlassFinish& finish,
          const QPalette& palette);

/// The pixels of such a background when its outline is shaped.
[[nodiscard]] QRegion outline(const QSize& size, double cornerRadius);

}  // namespace vantorel::GlassDrawing
