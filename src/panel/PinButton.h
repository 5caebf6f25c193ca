#pragma once

#include "chrome/SymbolButton.h"

namespace vantorel {

/// The pin of a row: shows whether the entry is pinned, and pins or unpins it.
class PinButton : public SymbolButton {
  Q_OBJECT

 public:
  static constexpr int side = 28;

  explicit PinButton(QWidget* parent);

  enum class Pin { pinned, notPinned };
  enum class Limit { canToggle, full };
  void setState(Pin pin, Limit limit);

  /// What a screen reader says after the name.
  [[nodiscard]] QString accessibilityValue() const;

 protected:
  [[nodiscard]] QColor tint() const override;

 private:
  Pin pin_ = Pin::notPinned;
};

}  // namespace vantorel
