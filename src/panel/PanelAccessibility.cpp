#include "panel/PanelAccessibility.h"

#include <QAccessibleWidget>

#include "panel/ClipListView.h"
#include "panel/ClipRowView.h"
#include "panel/PinButton.h"

namespace vantorel {
namespace {

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
    return new QAccessibleWidget(list, QAccessible::List);
  }
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
