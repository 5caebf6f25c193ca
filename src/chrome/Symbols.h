// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPixmap>
#include <string_view>

class QPainter;
class QRectF;

namespace vantorel::Symbols {

/// The symbol `name` as a picture of `points` square in one colour, sharp at `scale` pixels per
/// point. Kept, so asking again costs little. Null for a name that does not exist.
[[nodiscard]] QPixmap pixmap(std::string_view name, double points, const QColor& color,
                             double scale);

/// Draws the symbol in the middle of `area`, on whole pixels.
void draw(QPainter& painter, std::string_view name, const QRectF& area, double points,
          const QColor& color);
/// The same with a thin rim of another colour around all that it is made of.
void drawRimmed(QPainter& painter, std::string_view name, const QRectF& area, double points,
                const QColor& color, const QColor& rim);

}  // namespace vantorel::Symbols
