#include "panel/PinButton.h"

#include "chrome/KeySymbols.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double symbolPoints = 15;

}  // namespace

PinButton::PinButton(QWidget* parent) : SymbolButton(side, symbolPoints, parent) {
  setState(Pin::notPinned, Limit::canToggle);
}

void PinButton::setState(Pin pin, Limit limit) {
  pin_ = pin;
  const bool pinned = pin == Pin::pinned;
  const bool enabled = pinned || limit == Limit::canToggle;
  const std::string name = pinned ? "Unpin" : "Pin";
  setEnabled(enabled);
  setSymbol(pinned ? "pin.fill" : "pin");
  setAccessibleName(QString::fromStdString(name));
  setToolTip(enabled ? QString::fromStdString(spelledKeys(name + " (⌘P)"))
                     : QStringLiteral("Up to 5 pins. Unpin an item first."));
}

QString PinButton::accessibilityValue() const {
  return pin_ == Pin::pinned ? QStringLiteral("Pinned") : QStringLiteral("Not pinned");
}

QColor PinButton::tint() const {
  return pin_ == Pin::pinned ? VantorelTheme::gold() : SymbolButton::tint();
}

}  // namespace vantorel
