// SPDX-License-Identifier: MIT
#include "panel/FilterButton.h"

#include <QAccessible>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPainter>

#include "chrome/FocusRing.h"

namespace vantorel {
namespace {

constexpr double symbolPoints = 17;
constexpr double ringRadius = 7;

}  // namespace

FilterButton::FilterButton(std::string_view name, QWidget* parent)
    : SymbolButton(side, symbolPoints, parent) {
  const auto text = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_InputMethodEnabled);
  setAccessibleName(text);
  setToolTip(text);
}

void FilterButton::setState(const FilterMenus::ButtonState& state) {
  setSymbol(state.symbol);
  setAccented(state.active);
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

void FilterButton::paintEvent(QPaintEvent* event) {
  SymbolButton::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  drawFocusRing(painter, rect(), ringRadius, palette());
}

/// The base class has arrows lead to the next control, and opens only when Space is let go: by then
/// the menu has the keyboard.
void FilterButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space && event->key() != Qt::Key_Down) {
    QWidget::keyPressEvent(event);  // NOLINT(bugprone-parent-virtual-call): see above
  } else if (!event->isAutoRepeat()) {
    click();
  }
}

void FilterButton::inputMethodEvent(QInputMethodEvent* event) {
  event->accept();
  if (event->commitString().isEmpty() && event->preeditString().isEmpty()) return;
  if (onComposed) onComposed(event->commitString());
}

}  // namespace vantorel
