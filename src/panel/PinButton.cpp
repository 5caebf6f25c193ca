#include "panel/PinButton.h"

#include "chrome/KeySymbols.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double symbolPoints = 15;

}  // namespace

PinButton::PinButton(QWidget* parent) : SymbolButton(side, symbolPoints, parent) {
  setRow(RowContent());
}

void PinButton::setRow(const RowContent& row) {
  pinned_ = row.pinned;
  setEnabled(row.canPin);
  setSymbol(row.pinned ? "pin.fill" : "pin");
  setAccessibleName(QString::fromStdString(pinTitle(row)));
  setToolTip(QString::fromStdString(spelledKeys(pinToolTip(row))));
}

QString PinButton::accessibilityValue() const {
  return pinned_ ? QStringLiteral("Pinned") : QStringLiteral("Not pinned");
}

QColor PinButton::tint() const { return pinned_ ? VantorelTheme::gold() : SymbolButton::tint(); }

}  // namespace vantorel
