#include "app/StatusMenu.h"

#include <utility>

#include "text/Unicode.h"

namespace vantorel {
namespace {

MenuRow row(std::string title, StatusAction action) {
  return {.title = std::move(title), .tag = static_cast<int>(action)};
}

MenuRow separator() { return {}; }

MenuState onOrOff(bool isOn) { return isOn ? MenuState::on : MenuState::off; }

MenuRow pauseMenu(bool isPaused) {
  MenuRow menu = row(isPaused ? "Clipboard History Paused" : "Pause History", StatusAction::none);
  if (isPaused) menu.submenu.push_back(row("Resume Now", StatusAction::resumeHistory));
  menu.submenu.push_back(row("For 15 Minutes", StatusAction::pauseFifteenMinutes));
  menu.submenu.push_back(row("For 1 Hour", StatusAction::pauseOneHour));
  menu.submenu.push_back(row("Until Tomorrow", StatusAction::pauseUntilTomorrow));
  return menu;
}

MenuRow passwordManagerRow(bool ignored) {
  MenuRow ignore = row("Ignore Password Managers", StatusAction::togglePasswordManagerPrivacy);
  ignore.state = onOrOff(ignored);
  return ignore;
}

std::optional<MenuRow> excludeRow(const StatusMenuState& state) {
  const auto& target = state.lastPasteTarget;
  if (!target || !target->bundleIdentifier) return std::nullopt;
  if (state.excludedApps.contains(lowerCased(*target->bundleIdentifier))) return std::nullopt;
  return row("Exclude " + target->localizedName.value_or("Current App"),
             StatusAction::excludeCurrentApp);
}

std::optional<MenuRow> excludedMenu(const StatusMenuState& state) {
  if (state.excludedApps.empty()) return std::nullopt;
  MenuRow menu = row("Excluded Apps", StatusAction::none);
  for (const auto& [identifier, name] : state.excludedApps) {
    MenuRow include = row("Include " + name, StatusAction::removeExcludedApp);
    include.representedObject = identifier;
    menu.submenu.push_back(std::move(include));
  }
  return menu;
}

MenuRow loginRow(LoginItem::Status status) {
  MenuRow launch = row("Launch at Login", StatusAction::toggleLaunchAtLogin);
  launch.state = onOrOff(status == LoginItem::Status::enabled);
  launch.enabled = status != LoginItem::Status::unavailable;
  return launch;
}

MenuRow quitRow() {
  MenuRow quit = row("Quit Vantorel", StatusAction::quit);
  quit.keyEquivalent = "q";
  return quit;
}

}  // namespace

std::vector<MenuRow> statusMenuRows(const StatusMenuState& state) {
  std::vector<MenuRow> rows;
  rows.push_back(row("Open Vantorel", StatusAction::openHistory));
  rows.push_back(row("Search & Filter…", StatusAction::openSearch));
  rows.push_back(pauseMenu(state.isPaused));
  rows.push_back(passwordManagerRow(state.ignoresPasswordManagers));
  if (auto exclude = excludeRow(state)) rows.push_back(std::move(*exclude));
  if (auto excluded = excludedMenu(state)) rows.push_back(std::move(*excluded));
  rows.push_back(loginRow(state.launchAtLogin));
  rows.push_back(row("Keyboard Shortcut…", StatusAction::showShortcutPanel));
  rows.push_back(separator());
  rows.push_back(row("Clear History…", StatusAction::confirmClearHistory));
  rows.push_back(row("About Vantorel", StatusAction::showAbout));
  rows.push_back(separator());
  rows.push_back(quitRow());
  return rows;
}

StatusAction statusAction(const MenuRow& row) { return static_cast<StatusAction>(row.tag); }

std::string_view statusToolTip(bool isPaused) {
  return isPaused ? "Vantorel — History Paused" : "Vantorel";
}

}  // namespace vantorel
