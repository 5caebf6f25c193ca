#include "panel/FilterButton.h"

#include <QAccessible>

#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double symbolPoints = 17;

}  // namespace

FilterButton::FilterButton(std::string_view name, QWidget* parent)
    : SymbolButton(side, symbolPoints, parent) {
  const auto text = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
  setAccessibleName(text);
  setToolTip(text);
}

void FilterButton::setState(const FilterMenus::ButtonState& state) {
  setSymbol(state.symbol);
  setToolTip(QString::fromStdString(state.toolTip));
  const auto value = QString::fromStdString(state.value);
  if (active_ == state.active && value_ == value) return;
  active_ = state.active;
  value_ = value;
  update();
  if (!QAccessible::isActive()) return;
  QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&changed);
}

QColor FilterButton::tint() const { return active_ ? VantorelTheme::gold() : SymbolButton::tint(); }

}  // namespace vantorel
