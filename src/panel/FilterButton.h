#pragma once

#include "chrome/SymbolButton.h"
#include "panel/FilterMenus.h"

namespace vantorel {

/// One of the two buttons beside the search field: opens a menu, and shows whether what was chosen
/// there narrows the list. Tab leads to it; then Space and Down open the menu.
class FilterButton : public SymbolButton {
  Q_OBJECT

 public:
  static constexpr int side = 28;

  FilterButton(std::string_view name, QWidget* parent);

  void setState(const FilterMenus::ButtonState& state);

  /// What a screen reader says after the name.
  [[nodiscard]] QString accessibilityValue() const { return value_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QString value_;
  bool active_ = false;
};

}  // namespace vantorel
