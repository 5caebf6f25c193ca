#include "app/AppDelegate.h"
#include "app/Commands.h"
#include "app/StatusImages.h"
#include "app/StatusMenuPopup.h"

namespace vantorel {

void AppDelegate::configureMenuBar() {
  const std::weak_ptr<bool> alive = alive_;
  pauseExpiry_.onExpired = [this] { refreshStatusItem(); };
  refreshStatusItem();
  StatusItem::Handlers handlers;
  handlers.onClick = [this, alive] {
    if (!alive.expired()) openHistory();
  };
  handlers.onMiddleClick = [this, alive] {
    if (!alive.expired()) openSearch();
  };
  handlers.onMenuWanted = [this, alive](Point at) {
    if (!alive.expired()) showStatusMenu(at);
  };
  handlers.menuRows = [this, alive] {
    return alive.expired() ? std::vector<MenuRow>() : statusMenuRows(statusMenuState());
  };
  handlers.onChosen = [this, alive](const MenuRow& row) {
    if (!alive.expired()) performAction(row.action, row.representedObject, *this);
  };
  desktop_.statusItem.show(std::move(handlers));
}

StatusMenuState AppDelegate::statusMenuState() {
  StatusMenuState state;
  state.isPaused = privacy_.isPaused();
  state.ignoresPasswordManagers =
      desktop_.defaults.boolean(PrivacyPreferences::ignorePasswordManagersKey).value_or(false);
  state.lastPasteTarget = focus_.lastPasteTarget();
  for (const auto& identifier : privacy_.excludedBundleIds()) {
    const auto name = desktop_.workspace.applicationName(identifier);
    state.excludedApps.emplace(identifier, name.value_or(identifier));
  }
  state.launchAtLogin = desktop_.loginItem.status();
  return state;
}

void AppDelegate::refreshStatusItem() {
  const bool isPaused = privacy_.isPaused();
  desktop_.statusItem.setImage(statusImage(isPaused));
  desktop_.statusItem.setToolTip(std::string(statusToolTip(isPaused)));
  desktop_.statusItem.menuChanged();
  pauseExpiry_.watch();
}

void AppDelegate::showStatusMenu() { showStatusMenu(desktop_.screens.mouseLocation()); }

void AppDelegate::showStatusMenu(Point at) {
  if (!statusMenu_) {
    statusMenu_ = std::make_unique<StatusMenuPopup>(chromeServices());
    statusMenu_->onChosen = [this](const MenuRow& row) {
      performAction(row.action, row.representedObject, *this);
    };
  }
  statusMenu_->popUp(statusMenuRows(statusMenuState()), at);
}

}  // namespace vantorel
