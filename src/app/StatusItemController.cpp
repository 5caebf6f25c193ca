// SPDX-License-Identifier: MIT
#include "app/StatusItemController.h"

#include <string>

#include "app/Commands.h"
#include "app/StatusImages.h"

namespace vantorel {

StatusItemController::StatusItemController(const Desktop& desktop, const ChromeServices& chrome,
                                           PrivacyPreferences& privacy, const FocusTracker& focus,
                                           ApplicationCommands& application)
    : desktop_(desktop),
      privacy_(privacy),
      focus_(focus),
      application_(application),
      pauseExpiry_(privacy, desktop.dispatch),
      popup_(chrome) {
  pauseExpiry_.onExpired = [this] { refreshStatusItem(); };
  popup_.onChosen = [this](const MenuRow& row) { perform(row); };
}

void StatusItemController::configureMenuBar() {
  refreshStatusItem();
  desktop_.statusItem.show({
      .onClick = life_.guard([this] { application_.openHistory(); }),
      .onMiddleClick = life_.guard([this] { application_.openSearch(); }),
      .onUnseen = life_.guard([this] {
        if (onUnseen) onUnseen();
      }),
      .onMenuWanted = life_.guard([this](Point at) { showStatusMenu(at); }),
      .menuRows = life_.guard([this] { return menuRows(); }),
      .onChosen = life_.guard([this](const MenuRow& row) { perform(row); }),
  });
}

void StatusItemController::refreshStatusItem() {
  const bool isPaused = privacy_.isPaused();
  desktop_.statusItem.setImage(statusImage(isPaused || trouble_ != Trouble::none));
  desktop_.statusItem.setToolTip(std::string(statusToolTip(isPaused, trouble_)));
  desktop_.statusItem.menuChanged();
  pauseExpiry_.watch();
}

void StatusItemController::setTrouble(Trouble trouble) {
  trouble_ = trouble;
  refreshStatusItem();
}

void StatusItemController::showStatusMenu() {
  Point at = desktop_.screens.mouseLocation();
  if (at == unknownPlace) {
    if (const auto screen = desktop_.screens.mainScreen()) {
      at = {screen->visibleFrame.midX(), screen->visibleFrame.midY()};
    }
  }
  showStatusMenu(at);
}

void StatusItemController::showStatusMenu(Point at) { popup_.popUp(menuRows(), at); }

void StatusItemController::stop() {
  pauseExpiry_.stop();
  desktop_.statusItem.hide();
}

std::vector<MenuRow> StatusItemController::menuRows() {
  StatusMenuState state;
  state.isLocked = desktop_.sessionLock.isLocked();
  state.isPaused = privacy_.isPaused();
  state.ignoresPasswordManagers =
      desktop_.defaults.boolean(PrivacyPreferences::ignorePasswordManagersKey).value_or(false);
  state.lastPasteTarget = focus_.lastPasteTarget();
  for (const auto& identifier : privacy_.excludedBundleIds()) {
    const auto name = desktop_.workspace.applicationName(identifier);
    state.excludedApps.emplace(identifier, name.value_or(identifier));
  }
  if (!desktop_.tellsFront) {
    const bool isGnome = desktop_.name.find("GNOME") != std::string::npos;
    state.sourcesUnknown = std::string(isGnome ? "GNOME" : "This desktop") +
                           " does not tell which application is in front";
  }
  state.launchAtLogin = desktop_.loginItem.status();
  return statusMenuRows(state);
}

void StatusItemController::perform(const MenuRow& row) {
  performAction(row.action, row.representedObject, application_);
}

}  // namespace vantorel
