#include "app/AppDelegate.h"
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
    if (!alive.expired()) perform(statusAction(row), row.representedObject);
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
      perform(statusAction(row), row.representedObject);
    };
  }
  statusMenu_->popUp(statusMenuRows(statusMenuState()), at);
}

void AppDelegate::perform(StatusAction action, const std::string& object) {
  switch (action) {
    case StatusAction::none:
      return;
    case StatusAction::openHistory:
      return openHistory();
    case StatusAction::openSearch:
      return openSearch();
    case StatusAction::resumeHistory:
      return resumeHistory();
    case StatusAction::pauseFifteenMinutes:
      return pauseFifteenMinutes();
    case StatusAction::pauseOneHour:
      return pauseOneHour();
    case StatusAction::pauseUntilTomorrow:
      return pauseUntilTomorrow();
    case StatusAction::togglePasswordManagerPrivacy:
      return togglePasswordManagerPrivacy();
    case StatusAction::excludeCurrentApp:
      return excludeCurrentApp();
    case StatusAction::removeExcludedApp:
      return removeExcludedApp(object);
    case StatusAction::toggleLaunchAtLogin:
      return toggleLaunchAtLogin();
    case StatusAction::showShortcutPanel:
      return showShortcutPanel();
    case StatusAction::confirmClearHistory:
      return confirmClearHistory();
    case StatusAction::showAbout:
      return showAbout();
    case StatusAction::quit:
      return quit();
  }
}

}  // namespace vantorel
