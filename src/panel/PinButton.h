// SPDX-License-Identifier: MIT
#pragma once

#include "chrome/SymbolButton.h"
#include "panel/RowContent.h"
#include "panel/RowGeometry.h"

namespace vantorel {

/// What a screen reader says of an entry's pin.
[[nodiscard]] inline QString pinState(bool pinned) {
  return pinned ? QStringLiteral("Pinned") : QStringLiteral("Not pinned");
}

/// The pin of a row: shows whether the entry is pinned, and pins or unpins it.
class PinButton : public SymbolButton {
  Q_OBJECT

 public:
  static constexpr int side = static_cast<int>(RowGeometry::pinSide);

  explicit PinButton(QWidget* parent);

  /// Shows the state of the entry in that row.
  void setRow(const RowContent& row);

  /// What a screen reader says after the name.
  [[nodiscard]] QString accessibilityValue() const { return pinState(pinned_); }

 protected:
  bool event(QEvent* event) override;

 private:
  bool pinned_ = false;
};

}  // namespace vantorel
