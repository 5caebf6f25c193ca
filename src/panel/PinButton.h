#pragma once

#include "chrome/SymbolButton.h"
#include "panel/RowContent.h"
#include "panel/RowGeometry.h"

namespace vantorel {

/// The pin of a row: shows whether the entry is pinned, and pins or unpins it.
class PinButton : public SymbolButton {
  Q_OBJECT

 public:
  static constexpr int side = static_cast<int>(RowGeometry::pinSide);

  explicit PinButton(QWidget* parent);

  /// Shows the state of the entry in that row.
  void setRow(const RowContent& row);

  /// What a screen reader says after the name.
  [[nodiscard]] QString accessibilityValue() const;

 protected:
  bool event(QEvent* event) override;
  [[nodiscard]] QColor tint() const override;

 private:
  bool pinned_ = false;
};

}  // namespace vantorel
