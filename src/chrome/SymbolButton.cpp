// SPDX-License-Identifier: MIT
#include "chrome/SymbolButton.h"

#include <QEvent>
#include <QPainter>

#include "chrome/Symbols.h"
#include "chrome/ToolTipPanel.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double hoverAlpha = 0.07;
constexpr double pressedAlpha = 0.13;
constexpr double disabledAlpha = 0.46;

}  // namespace

SymbolButton::SymbolButton(int side, double symbolPoints, QWidget* parent)
    : QAbstractButton(parent), side_(side), symbolPoints_(symbolPoints) {
  setFocusPolicy(Qt::NoFocus);
  setFixedSize(side, side);
  setCursor(Qt::ArrowCursor);
}

void SymbolButton::setSymbol(std::string_view name) {
  if (name == symbol_) return;
  symbol_ = name;
  update();
}

void SymbolButton::setAccented(bool accented) {
  if (accented == accented_) return;
  accented_ = accented;
  update();
}

QColor SymbolButton::tint() const {
  return isEnabled() ? VantorelTheme::secondaryLabel(palette())
                     : VantorelTheme::labelWash(palette(), disabledAlpha);
}

bool SymbolButton::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QAbstractButton::event(event);
  ToolTipPanel::show(*this, rect(), toolTip());
  return true;
}

void SymbolButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (isEnabled() && (hovering_ || isDown())) {
    constexpr double inset = 2;
    constexpr double radius = 6;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(VantorelTheme::labelWash(palette(), isDown() ? pressedAlpha : hoverAlpha));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
  }
  drawSymbol(painter);
}

void SymbolButton::drawSymbol(QPainter& painter) const {
  const QColor gold = VantorelTheme::gold();
  if (!accented_) {
    Symbols::draw(painter, symbol_, rect(), symbolPoints_, tint());
  } else if (const QColor rim = VantorelTheme::sign(gold, palette()); rim != gold) {
    Symbols::drawRimmed(painter, symbol_, rect(), symbolPoints_, gold, rim);
  } else {
    Symbols::draw(painter, symbol_, rect(), symbolPoints_, gold);
  }
}

void SymbolButton::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  hovering_ = true;
  update();
}

void SymbolButton::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  hovering_ = false;
  update();
}

}  // namespace vantorel
