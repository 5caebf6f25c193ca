// SPDX-License-Identifier: MIT
#include "panel/PanelAccessibility.h"

#include <QAccessibleWidget>
#include <algorithm>

#include "chrome/VantorelMenu.h"
#include "panel/ClipListView.h"
#include "panel/ClipRowView.h"
#include "panel/FilterButton.h"
#include "panel/PinButton.h"

namespace vantorel {
namespace {

/// A control whose open menu is found below it: as a window of its own, the menu would hang nowhere
/// in the tree that assistive programs walk.
class AccessibleWithMenu : public QAccessibleWidget {
 public:
  AccessibleWithMenu(QWidget& control, QAccessible::Role role)
      : QAccessibleWidget(&control, role) {}

  [[nodiscard]] int childCount() const override {
    return QAccessibleWidget::childCount() + (openMenu() != nullptr ? 1 : 0);
  }
  [[nodiscard]] QAccessibleInterface* child(int index) const override {
    if (index < QAccessibleWidget::childCount()) return QAccessibleWidget::child(index);
    auto* menu = openMenu();
    return menu != nullptr ? QAccessible::queryAccessibleInterface(menu) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* wanted) const override {
    if (wanted != nullptr && wanted->object() == openMenu()) {
      return QAccessibleWidget::childCount();
    }
    return QAccessibleWidget::indexOfChild(wanted);
  }

 private:
  [[nodiscard]] VantorelMenu* openMenu() const {
    const auto menus = widget()->findChildren<VantorelMenu*>(Qt::FindDirectChildrenOnly);
    const auto open = std::find_if(menus.begin(), menus.end(),
                                   [](const VantorelMenu* menu) { return menu->isVisible(); });
    return open != menus.end() ? *open : nullptr;
  }
};

class AccessibleFilter : public AccessibleWithMenu {
 public:
  explicit AccessibleFilter(FilterButton& button)
      : AccessibleWithMenu(button, QAccessible::ButtonMenu), button_(button) {}

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    // A value is for few kinds of control only; what reads buttons out reads the description.
    if (kind == QAccessible::Value || kind == QAccessible::Description) {
      return button_.accessibilityValue();
    }
    return QAccessibleWidget::text(kind);
  }
  [[nodiscard]] QAccessible::State state() const override {
    auto state = QAccessibleWidget::state();
    state.hasPopup = true;
    return state;
  }
  [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& name) override {
    if (name == pressAction()) button_.click();
  }

 private:
  FilterButton& button_;
};

class AccessibleRow : public QAccessibleWidget {
 public:
  explicit AccessibleRow(ClipRowView& row)
      : QAccessibleWidget(&row, QAccessible::Button), row_(row) {}

  [[nodiscard]] QAccessible::State state() const override {
    auto state = QAccessibleWidget::state();
    state.selectable = true;
    state.selected = row_.isSelected();
    state.focusable = true;
    state.focused = row_.isSelected() && row_.parentWidget()->hasFocus();
    return state;
  }
  [[nodiscard]] QStringList actionNames() const override {
    return {pressAction(), showMenuAction()};
  }
  void doAction(const QString& name) override {
    if (name == pressAction() && row_.onChoose) row_.onChoose();
    if (name == showMenuAction() && row_.onMenu) {
      row_.onMenu(row_.mapToGlobal(row_.rect().center()));
    }
  }

 private:
  ClipRowView& row_;
};

class AccessiblePin : public QAccessibleWidget {
 public:
  explicit AccessiblePin(PinButton& button)
      : QAccessibleWidget(&button, QAccessible::Button), button_(button) {}

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return button_.accessibilityValue();
    // A value is for few kinds of control only; what reads buttons out reads this.
    if (kind == QAccessible::Description) return button_.accessibilityValue();
    return QAccessibleWidget::text(kind);
  }
  [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& name) override {
    if (name == pressAction() && button_.isEnabled()) button_.click();
  }

 private:
  PinButton& button_;
};

QAccessibleInterface* accessibleFor(const QString& /*className*/, QObject* object) {
  if (auto* row = qobject_cast<ClipRowView*>(object)) return new AccessibleRow(*row);
  if (auto* pin = qobject_cast<PinButton*>(object)) return new AccessiblePin(*pin);
  if (auto* list = qobject_cast<ClipListView*>(object)) {
    return new AccessibleWithMenu(*list, QAccessible::List);
  }
  if (auto* filter = qobject_cast<FilterButton*>(object)) return new AccessibleFilter(*filter);
  return nullptr;
}

}  // namespace

void installPanelAccessibility() {
  static const bool installed = [] {
    QAccessible::installFactory(accessibleFor);
    return true;
  }();
  static_cast<void>(installed);
}

}  // namespace vantorel
