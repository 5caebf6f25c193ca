#include "app/StatusMenuPopup.h"

#include <QAction>
#include <cmath>
#include <string>

#include "chrome/VantorelMenu.h"

namespace vantorel {
namespace {

/// An ampersand before a letter would mark the letter.
QString label(const std::string& title) {
  return QString::fromStdString(shownMenuTitle(title)).replace(u'&', QStringLiteral("&&"));
}

QPoint pixel(Point at) {
  return {static_cast<int>(std::lround(at.x)), static_cast<int>(std::lround(at.y))};
}

}  // namespace

StatusMenuPopup::StatusMenuPopup(const AccessibilityPreferences& accessibility,
                                 const WindowBackdrops* backdrops)
    : accessibility_(accessibility), backdrops_(backdrops) {}

StatusMenuPopup::~StatusMenuPopup() = default;

void StatusMenuPopup::popUp(const std::vector<MenuRow>& rows, Point at) {
  retire();
  menu_ = std::make_unique<VantorelMenu>(accessibility_, backdrops_);
  menu_->setWindowTitle("Vantorel Menu");
  menu_->setAccessibleName("Vantorel Menu");
  fill(*menu_, rows);
  menu_->popup(pixel(at));
}

void StatusMenuPopup::fill(VantorelMenu& menu, const std::vector<MenuRow>& rows) {
  for (const MenuRow& row : rows) {
    if (row.isSeparator()) {
      menu.addSeparator();
    } else if (!row.submenu.empty()) {
      fill(menu.addSubmenu(label(row.title)), row.submenu);
    } else {
      add(menu, row);
    }
  }
}

void StatusMenuPopup::add(VantorelMenu& menu, const MenuRow& row) {
  QAction* action = menu.addAction(label(row.title));
  action->setEnabled(row.enabled);
  action->setCheckable(row.state != MenuState::none);
  action->setChecked(row.state == MenuState::on);
  if (!row.keyEquivalent.empty()) {
    action->setShortcut(QKeySequence("Ctrl+" + QString::fromStdString(row.keyEquivalent)));
    action->setShortcutVisibleInContextMenu(true);
  }
  QObject::connect(action, &QAction::triggered, action, [this, row] {
    if (onChosen) onChosen(row);
  });
}

// The menu may be what is calling: it goes once it has come to rest.
void StatusMenuPopup::retire() {
  if (!menu_) return;
  menu_->hide();
  menu_.release()->deleteLater();
}

}  // namespace vantorel
