// SPDX-License-Identifier: MIT
#include "panel/PinButton.h"

#include <QMouseEvent>

#include "chrome/KeySymbols.h"

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
  setAccented(row.pinned);
  setAccessibleName(QString::fromStdString(pinTitle(row)));
  setToolTip(QString::fromStdString(spelledKeys(pinToolTip(row))));
}

/// A disabled button would swallow every press. Another button than the left one is meant for the
/// row; the left one is not, or it would paste.
bool PinButton::event(QEvent* event) {
  if (!isEnabled() && event->type() == QEvent::MouseButtonPress &&
      static_cast<const QMouseEvent*>(event)->button() != Qt::LeftButton) {
    event->ignore();
    return false;
  }
  return SymbolButton::event(event);
}

}  // namespace vantorel
