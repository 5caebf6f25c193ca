// SPDX-License-Identifier: MIT
#include "chrome/PushButton.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>

#include "chrome/FocusRing.h"
#include "chrome/Symbols.h"
#include "chrome/ToolTipPanel.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double regularHeight = 26;
constexpr double largeHeight = 30;
constexpr double regularRadius = 7;
constexpr double largeRadius = 8;
constexpr double regularFont = 13;
constexpr double largeFont = 13;
constexpr int titleMargin = 16;
constexpr int minWidth = 76;
constexpr int symbolSide = 15;
constexpr int symbolGap = 7;
constexpr double disabledAlpha = 0.4;

// Of the label colour, by how close the pointer is.
constexpr double restingAlpha = 0.08;
constexpr double hoverAlpha = 0.12;
constexpr double pressedAlpha = 0.18;
constexpr double edgeAlpha = 0.09;
constexpr float tintAlpha = 0.17F;
constexpr float tintHoverAlpha = 0.24F;
constexpr float tintPressedAlpha = 0.32F;
constexpr float tintEdgeAlpha = 0.5F;

/// Reads well on the accent, whatever the desktop's colours are.
QColor onAccent() { return {0x2b, 0x1e, 0x05}; }

QColor withAlpha(QColor color, float alpha) {
  color.setAlphaF(alpha);
  return color;
}

}  // namespace

PushButton::PushButton(const QString& title, QWidget* parent, Prominence prominence,
                       ControlSize size)
    : QPushButton(title, parent), prominence_(prominence), size_(size) {
  setFocusPolicy(Qt::TabFocus);
  setAutoDefault(false);
  setCursor(Qt::ArrowCursor);
  setFont(VantorelTheme::systemFont(
      size == ControlSize::large ? largeFont : regularFont,
      prominence == Prominence::primary ? QFont::DemiBold : QFont::Medium));
}

void PushButton::setTint(const QColor& tint, std::string_view symbol) {
  tint_ = tint;
  symbol_ = symbol;
  updateGeometry();
  update();
}

QSize PushButton::sizeHint() const {
  int width = fontMetrics().horizontalAdvance(text()) + 2 * titleMargin;
  if (!symbol_.empty()) width += symbolSide + symbolGap;
  const double height = size_ == ControlSize::large ? largeHeight : regularHeight;
  // A font larger than foreseen still gets its room.
  constexpr int verticalMargin = 4;
  return {std::max(width, minWidth),
          std::max(static_cast<int>(height), fontMetrics().height() + 2 * verticalMargin)};
}

bool PushButton::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QPushButton::event(event);
  ToolTipPanel::show(*this, rect(), toolTip());
  return true;
}

QColor PushButton::background() const {
  const bool hovering = isEnabled() && underMouse();
  if (tint_) {
    return withAlpha(*tint_, isDown() ? tintPressedAlpha : hovering ? tintHoverAlpha : tintAlpha);
  }
  if (prominence_ == Prominence::primary) {
    constexpr int darker = 112;
    constexpr int lighter = 106;
    const QColor gold = VantorelTheme::gold();
    return isDown() ? gold.darker(darker) : hovering ? gold.lighter(lighter) : gold;
  }
  return VantorelTheme::labelWash(palette(), isDown()   ? pressedAlpha
                                             : hovering ? hoverAlpha
                                                        : restingAlpha);
}

QColor PushButton::foreground() const {
  const bool onGold = prominence_ == Prominence::primary && !tint_;
  return onGold ? onAccent() : VantorelTheme::label(palette());
}

void PushButton::paintEvent(QPaintEvent* /*event*/) {
  constexpr double half = 0.5;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(disabledAlpha);
  const double radius = size_ == ControlSize::large ? largeRadius : regularRadius;
  const QRectF bounds = rect();
  painter.setPen(Qt::NoPen);
  painter.setBrush(background());
  painter.drawRoundedRect(bounds, radius, radius);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(
      tint_ ? withAlpha(*tint_, tintEdgeAlpha) : VantorelTheme::labelWash(palette(), edgeAlpha),
      1));
  painter.drawRoundedRect(bounds.adjusted(half, half, -half, -half), radius - half, radius - half);
  if (hasFocus()) drawFocusRing(painter, bounds, radius, palette());
  drawTitle(painter);
}

void PushButton::drawTitle(QPainter& painter) const {
  QRectF area = rect();
  if (!symbol_.empty()) {
    // Symbol and title stand in the middle together, the symbol where reading begins.
    const int titleWidth = fontMetrics().horizontalAdvance(text());
    const double whole = symbolSide + symbolGap + titleWidth;
    const double left = (width() - whole) / 2;
    const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
    const double symbolLeft = rightToLeft ? left + titleWidth + symbolGap : left;
    const double titleLeft = rightToLeft ? left : left + symbolSide + symbolGap;
    Symbols::draw(painter, symbol_, QRectF(symbolLeft, 0, symbolSide, height()), symbolSide,
                  tint_ ? VantorelTheme::sign(*tint_, palette()) : foreground());
    area = QRectF(titleLeft, 0, titleWidth, height());
  }
  painter.setPen(foreground());
  painter.drawText(area, static_cast<int>(Qt::AlignCenter) | Qt::TextSingleLine, text());
}

void PushButton::enterEvent(QEnterEvent* event) {
  QPushButton::enterEvent(event);
  update();
}

void PushButton::leaveEvent(QEvent* event) {
  QPushButton::leaveEvent(event);
  update();
}

}  // namespace vantorel
