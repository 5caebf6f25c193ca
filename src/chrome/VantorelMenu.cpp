// SPDX-License-Identifier: MIT
#include "chrome/VantorelMenu.h"

#include <QAction>
#include <QCoreApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

#include "chrome/GlassDrawing.h"
#include "chrome/MenuStyle.h"
#include "chrome/ToolTipPanel.h"
#include "chrome/VantorelTheme.h"
#include "chrome/WindowGlass.h"

namespace vantorel {
namespace {

constexpr double fontPoints = 13;

/// One for all menus, which goes with the application.
MenuStyle* menuStyle() {
  static MenuStyle* const style = [] {
    auto* made = new MenuStyle;
    made->setParent(QCoreApplication::instance());
    return made;
  }();
  return style;
}

/// The menu that it opened from; null when it opened by itself.
QMenu* menuBefore(const QMenu& menu) { return qobject_cast<QMenu*>(menu.parentWidget()); }

/// The row that the key stands beside, in a menu or in one that it opened from; null without one.
QAction* rowOfKey(const QKeySequence& key, const QMenu& menu) {
  const auto rows = menu.actions();
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const QAction* row) {
    return !row->shortcut().isEmpty() && row->shortcut() == key && row->isEnabled();
  });
  if (found != rows.end()) return *found;
  const auto* before = menuBefore(menu);
  return before != nullptr ? rowOfKey(key, *before) : nullptr;
}

}  // namespace

QString VantorelMenu::label(std::string_view title) {
  return QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()))
      .replace(u'&', QStringLiteral("&&"));
}

VantorelMenu::VantorelMenu(const AccessibilityPreferences& accessibility,
                           const WindowBackdrops* backdrops, QWidget* parent)
    : QMenu(parent), accessibility_(accessibility), backdrops_(backdrops) {
  setStyle(menuStyle());
  setFont(VantorelTheme::systemFont(fontPoints));
  setWindowTitle(QStringLiteral("Menu"));  // without one it would have the program's name
  setWindowFlag(Qt::FramelessWindowHint);
  setWindowFlag(Qt::NoDropShadowWindowHint);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_QuitOnClose, false);
  new WindowGlass({*this, MenuStyle::cornerRadius, accessibility_, backdrops_},
                  [this](const GlassFinish& finish) {
                    finish_ = finish;
                    update();
                  });
  connect(this, &QMenu::aboutToHide, this, [this] {
    if (onClosed) onClosed();
  });
}

VantorelMenu& VantorelMenu::addSubmenu(const QString& title) {
  auto* menu = new VantorelMenu(accessibility_, backdrops_, this);
  menu->setTitle(title);
  menu->setWindowTitle(title);
  addMenu(menu);
  return *menu;
}

/// A key that stands beside a row's title chooses the row.
void VantorelMenu::keyPressEvent(QKeyEvent* event) {
  auto* row = rowOfKey(event->keyCombination(), *this);
  if (row == nullptr) return QMenu::keyPressEvent(event);
  for (QMenu* menu = this; menu != nullptr; menu = menuBefore(*menu)) menu->close();
  row->trigger();
}

bool VantorelMenu::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QMenu::event(event);
  auto* row = actionAt(static_cast<const QHelpEvent*>(event)->pos());
  // A row that has nothing to say would give its title.
  const bool speaks = row != nullptr && row->toolTip() != QAction(row->text()).toolTip();
  ToolTipPanel::show(*this, actionGeometry(row), speaks ? row->toolTip() : QString());
  return true;
}

void VantorelMenu::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    GlassDrawing::draw(painter, rect(), MenuStyle::cornerRadius, finish_, palette());
  }
  QMenu::paintEvent(event);
}

}  // namespace vantorel
