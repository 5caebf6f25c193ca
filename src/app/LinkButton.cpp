// SPDX-License-Identifier: MIT
#include "app/LinkButton.h"

#include <QPainter>

#include "chrome/FocusRing.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr int room = 3;  // at each side of the words, for the ring

}  // namespace

LinkButton::LinkButton(const QString& words, const QFont& font, QWidget* parent)
    : QAbstractButton(parent) {
  QFont underlined = font;
  underlined.setUnderline(true);
  setFont(underlined);
  setText(words);
  setAccessibleName(words);
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::PointingHandCursor);
}

QSize LinkButton::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text()) + 2 * room, fontMetrics().height()};
}

void LinkButton::paintEvent(QPaintEvent* /*event*/) {
  constexpr double ringRadius = 4;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(VantorelTheme::label(palette()));
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
  if (hasFocus()) drawFocusRing(painter, rect(), ringRadius, palette());
}

}  // namespace vantorel
