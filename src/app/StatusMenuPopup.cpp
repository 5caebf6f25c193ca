// SPDX-License-Identifier: MIT
#include "app/StatusMenuPopup.h"

#include <QAction>
#include <QWindow>
#include <string>

#include "chrome/Geometry.h"
#include "chrome/VantorelMenu.h"

namespace vantorel {
namespace {

constexpr Seconds inputInterval{0.03};
constexpr int inputAttempts = 100;

}  // namespace

StatusMenuPopup::StatusMenuPopup(const ChromeServices& services) : services_(services) {}

StatusMenuPopup::~StatusMenuPopup() = default;

void StatusMenuPopup::popUp(const std::vector<MenuRow>& rows, Point at) {
  close();
  menu_ = std::make_unique<VantorelMenu>(services_.accessibility, services_.backdrops);
  menu_->setWindowTitle("Vantorel Menu");
  menu_->setAccessibleName("Vantorel Menu");
  fill(*menu_, rows);
  menu_->popup(toQPoint(at));
  takeInput(inputAttempts);
}

// The menu may have been asked for by a key of the desktop, which holds the keyboard until that key
// is let go. Until the menu has it and the pointer, nothing would take the menu away again.
void StatusMenuPopup::takeInput(int attempts) {
  nextAttempt_.reset();
  if (attempts == 0 || !menu_->isVisible()) return;
  QWindow* window = menu_->windowHandle();
  if (window->setKeyboardGrabEnabled(true) && window->setMouseGrabEnabled(true)) return;
  nextAttempt_ =
      services_.dispatch.after(inputInterval, [this, attempts] { takeInput(attempts - 1); });
}

void StatusMenuPopup::fill(VantorelMenu& menu, const std::vector<MenuRow>& rows) {
  for (const MenuRow& row : rows) {
    if (row.isSeparator()) {
      menu.addSeparator();
    } else if (!row.submenu.empty()) {
      fill(menu.addSubmenu(VantorelMenu::label(shownMenuTitle(row.title))), row.submenu);
    } else {
      add(menu, row);
    }
  }
}

void StatusMenuPopup::add(VantorelMenu& menu, const MenuRow& row) {
  QAction* action = menu.addAction(VantorelMenu::label(shownMenuTitle(row.title)));
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

// The call may come from the menu itself, so it is deleted in a later turn.
void StatusMenuPopup::close() {
  nextAttempt_.reset();
  if (!menu_) return;
  menu_->hide();
  menu_.release()->deleteLater();
}

}  // namespace vantorel
