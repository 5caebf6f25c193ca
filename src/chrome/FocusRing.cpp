// SPDX-License-Identifier: MIT
#include "chrome/FocusRing.h"

#include <QPainter>

#include "chrome/VantorelTheme.h"

namespace vantorel {

void drawFocusRing(QPainter& painter, const QRectF& bounds, double radius,
                   const QPalette& palette) {
  // Gold alone would not be seen on a golden button: a line of the window's colour parts them.
  const auto ring = [&](double inset, double width, const QColor& color) {
    const double middle = inset + width / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, width));
    painter.drawRoundedRect(bounds.adjusted(middle, middle, -middle, -middle), radius - middle,
                            radius - middle);
  };
  constexpr double outer = 2;
  constexpr float partingAlpha = 0.67F;
  QColor parting = VantorelTheme::window(palette);
  parting.setAlphaF(partingAlpha);
  // On a golden button the sign's own colour is told from it by less than 3 to 1.
  constexpr int darker = 195;
  const QColor gold = VantorelTheme::gold();
  ring(0, outer, VantorelTheme::isDark(palette) ? gold : gold.darker(darker));
  ring(outer, 1, parting);
}

}  // namespace vantorel
