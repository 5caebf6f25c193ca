// SPDX-License-Identifier: MIT
#include "app/EditSymbolButton.h"

#include <QPainter>

#include "chrome/FocusRing.h"

namespace vantorel {
namespace {

constexpr double symbolPoints = 16;

}  // namespace

EditSymbolButton::EditSymbolButton(int side, QWidget* parent)
    : SymbolButton(side, symbolPoints, parent) {
  setSymbol("pencil");
  setFocusPolicy(Qt::TabFocus);
  const auto words = QStringLiteral("Change shortcut");
  setAccessibleName(words);
  setToolTip(words);
}

void EditSymbolButton::paintEvent(QPaintEvent* event) {
  SymbolButton::paintEvent(event);
  if (!hasFocus()) return;
  constexpr double inset = 2;
  constexpr double radius = 6;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  drawFocusRing(painter, QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, palette());
}

}  // namespace vantorel
