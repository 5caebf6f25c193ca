#include "panel/PinButton.h"

#include <QPainter>

#include "chrome/KeySymbols.h"
#include "chrome/Symbols.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double symbolPoints = 15;

}  // namespace

PinButton::PinButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::NoFocus);
  setFixedSize(side, side);
  setState(Pin::notPinned, Limit::canToggle);
}

void PinButton::setState(Pin pin, Limit limit) {
  pin_ = pin;
  const bool pinned = pin == Pin::pinned;
  const QString name = pinned ? QStringLiteral("Unpin") : QStringLiteral("Pin");
  const bool enabled = pinned || limit == Limit::canToggle;
  setEnabled(enabled);
  setAccessibleName(name);
  const auto hint = name.toStdString() + " (⌘P)";
  setToolTip(enabled ? QString::fromStdString(spelledKeys(hint))
                     : QStringLiteral("Up to 5 pins. Unpin an item first."));
  update();
}

QString PinButton::accessibilityValue() const {
  return pin_ == Pin::pinned ? QStringLiteral("Pinned") : QStringLiteral("Not pinned");
}

QColor PinButton::tint() const {
  if (pin_ == Pin::pinned) return VantorelTheme::gold();
  QColor color = VantorelTheme::secondaryLabel(palette());
  if (!isEnabled()) color = VantorelTheme::labelWash(palette(), 0.22);
  return color;
}

void PinButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (isEnabled() && (hovering_ || isDown())) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(VantorelTheme::labelWash(palette(), isDown() ? 0.13 : 0.07));
    constexpr double inset = 2;
    constexpr double radius = 6;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
  }
  const std::string_view symbol = pin_ == Pin::pinned ? "pin.fill" : "pin";
  Symbols::draw(painter, symbol, rect(), symbolPoints, tint());
}

void PinButton::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  hovering_ = true;
  update();
}

void PinButton::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  hovering_ = false;
  update();
}

}  // namespace vantorel
