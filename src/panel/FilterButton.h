// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "chrome/SymbolButton.h"
#include "panel/FilterMenus.h"

namespace vantorel {

/// One of the two buttons beside the search field: opens a menu, and shows whether what was chosen
/// there narrows the list. Tab leads to it; then Space and Down open the menu. Letters are for the
/// search, also those that an input method composes of several keys.
class FilterButton : public SymbolButton {
  Q_OBJECT

 public:
  static constexpr int side = 28;

  FilterButton(std::string_view name, QWidget* parent);

  /// An input method has composed this, or has begun to compose something: then it is empty.
  std::function<void(const QString& text)> onComposed;

  void setState(const FilterMenus::ButtonState& state);

  /// What a screen reader says after the name.
  [[nodiscard]] QString accessibilityValue() const { return value_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;

 private:
  QString value_;
  bool active_ = false;
};

}  // namespace vantorel
