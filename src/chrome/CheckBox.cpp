// SPDX-License-Identifier: MIT
#include "chrome/CheckBox.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "chrome/FocusRing.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr int boxSide = 16;
constexpr int gap = 8;
constexpr double radius = 4.5;
constexpr double fontPoints = 12.5;
constexpr int verticalMargin = 2;
constexpr double boxAlpha = 0.06;
constexpr double hoverAlpha = 0.12;
constexpr double edgeAlpha = 0.5;
constexpr double disabledAlpha = 0.4;

QPainterPath tick(const QPointF& corner) {
  QPainterPath path;
  path.moveTo(corner + QPointF(4, 8.4));
  path.lineTo(corner + QPointF(6.9, 11.3));
  path.lineTo(corner + QPointF(12.1, 4.9));
  return path;
}

}  // namespace

CheckBox::CheckBox(const QString& title, QWidget* parent) : QCheckBox(title, parent) {
  setFont(VantorelTheme::systemFont(fontPoints));
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
}

QSize CheckBox::sizeHint() const {
  const int title = text().isEmpty() ? 0 : gap + fontMetrics().horizontalAdvance(text());
  return {boxSide + title, std::max(boxSide, fontMetrics().height()) + 2 * verticalMargin};
}

void CheckBox::paintEvent(QPaintEvent* /*event*/) {
  constexpr double half = 0.5;
  const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
  const int boxLeft = rightToLeft ? width() - boxSide : 0;
  const int boxTop = (height() - boxSide) / 2;  // on a whole pixel
  const QRectF box(boxLeft, boxTop, boxSide, boxSide);
  const bool on = isChecked();

  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(disabledAlpha);
  painter.setPen(Qt::NoPen);
  painter.setBrush(on ? VantorelTheme::gold()
                      : VantorelTheme::labelWash(palette(), underMouse() ? hoverAlpha : boxAlpha));
  painter.drawRoundedRect(box, radius, radius);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(on ? VantorelTheme::sign(VantorelTheme::gold(), palette())
                         : VantorelTheme::labelWash(palette(), edgeAlpha),
                      1));
  painter.drawRoundedRect(box.adjusted(half, half, -half, -half), radius - half, radius - half);
  if (hasFocus()) drawFocusRing(painter, box, radius, palette());
  if (on) {
    constexpr double strokeWidth = 1.9;
    painter.setPen(
        QPen(QColor(0x2b, 0x1e, 0x05), strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(tick(box.topLeft()));
  }
  painter.setPen(VantorelTheme::label(palette()));
  const int titleLeft = rightToLeft ? 0 : boxSide + gap;
  const QRectF title(titleLeft, 0, width() - boxSide - gap, height());
  const auto side = rightToLeft ? Qt::AlignRight : Qt::AlignLeft;
  const auto direction = rightToLeft ? Qt::TextForceRightToLeft : Qt::TextForceLeftToRight;
  painter.drawText(title,
                   static_cast<int>(side) | static_cast<int>(Qt::AlignAbsolute) |
                       static_cast<int>(Qt::AlignVCenter) | static_cast<int>(Qt::TextSingleLine) |
                       static_cast<int>(direction),
                   text());
}

bool CheckBox::hitButton(const QPoint& position) const { return rect().contains(position); }

}  // namespace vantorel
