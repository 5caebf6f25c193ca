// SPDX-License-Identifier: MIT
#include "app/StatusMenu.h"

#include <utility>

#include "app/Commands.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

MenuRow row(Command command) {
  const CommandEntry& entry = entryOf(command);
  return {.title = std::string(entry.title), .action = std::string(entry.name)};
}

MenuRow row(Command command, const std::string& application) {
  MenuRow named = row(command);
  named.title += ' ' + application;
  return named;
}

MenuState onOrOff(bool isOn) { return isOn ? MenuState::on : MenuState::off; }

MenuRow pauseMenu(bool isPaused) {
  MenuRow menu{.title = isPaused ? "Clipboard History Paused" : "Pause History"};
  if (isPaused) menu.submenu.push_back(row(Command::resume));
  menu.submenu.push_back(row(Command::pauseFifteenMinutes));
  menu.submenu.push_back(row(Command::pauseOneHour));
  menu.submenu.push_back(row(Command::pauseUntilTomorrow));
  return menu;
}

MenuRow passwordManagerRow(bool ignored) {
  MenuRow ignore = row(Command::togglePasswordManagers);
  ignore.state = onOrOff(ignored);
  return ignore;
}

std::optional<MenuRow> excludeRow(const StatusMenuState& state) {
  if (!state.sourcesUnknown.empty())
    return MenuRow{.title = state.sourcesUnknown, .enabled = false};
  const auto& target = state.lastPasteTarget;
  if (!target || !target->bundleIdentifier) return std::nullopt;
  if (state.excludedApps.contains(lowerCased(*target->bundleIdentifier))) return std::nullopt;
  return row(Command::excludeApp, target->localizedName.value_or("Current App"));
}

std::optional<MenuRow> excludedMenu(const StatusMenuState& state) {
  if (state.excludedApps.empty()) return std::nullopt;
  MenuRow menu{.title = "Excluded Apps"};
  for (const auto& [identifier, name] : state.excludedApps) {
    MenuRow include = row(Command::includeApp, name);
    include.representedObject = identifier;
    menu.submenu.push_back(std::move(include));
  }
  return menu;
}

MenuRow loginRow(LoginItem::Status status) {
  MenuRow launch = row(Command::toggleLaunchAtLogin);
  launch.state = onOrOff(status == LoginItem::Status::enabled);
  launch.enabled = status != LoginItem::Status::unavailable;
  return launch;
}

MenuRow quitRow() {
  MenuRow quit = row(Command::quit);
  quit.keyEquivalent = "q";
  return quit;
}

}  // namespace

std::vector<MenuRow> statusMenuRows(const StatusMenuState& state) {
  std::vector<MenuRow> rows;
  if (state.isLocked) {
    rows.push_back({.title = "The desktop says that the screen is locked", .enabled = false});
  }
  rows.push_back(row(Command::toggle));
  rows.push_back(row(Command::search));
  rows.push_back(pauseMenu(state.isPaused));
  rows.push_back(passwordManagerRow(state.ignoresPasswordManagers));
  if (auto exclude = excludeRow(state)) rows.push_back(std::move(*exclude));
  if (auto excluded = excludedMenu(state)) rows.push_back(std::move(*excluded));
  rows.push_back(loginRow(state.launchAtLogin));
  rows.push_back(row(Command::shortcut));
  rows.emplace_back();  // a separator
  rows.push_back(row(Command::clear));
  rows.push_back(row(Command::about));
  rows.emplace_back();  // a separator
  rows.push_back(quitRow());
  return rows;
}

std::string_view statusToolTip(bool isPaused, Trouble trouble) {
  if (isPaused) return "Vantorel — History Paused";
  return trouble == Trouble::none ? "Vantorel" : wordsOf(trouble).toolTip;
}

}  // namespace vantorel
