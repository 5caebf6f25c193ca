// SPDX-License-Identifier: MIT
#include "app/Commands.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "app/ApplicationCommands.h"

namespace vantorel {
namespace {

using Application = ApplicationCommands;

template <void (Application::*method)()>
void call(Application& application, const std::string& /*argument*/,
          const ActionAnswer& /*answer*/) {
  (application.*method)();
}

void includeApp(Application& application, const std::string& bundleIdentifier,
                const ActionAnswer& /*answer*/) {
  application.removeExcludedApp(bundleIdentifier);
}

void copyEntry(Application& application, const std::string& identity, const ActionAnswer& answer) {
  application.copyEntry(identity, answer);
}

void importHistory(Application& application, const std::string& directory,
                   const ActionAnswer& answer) {
  application.importHistory(directory, answer);
}

void doNothing(Application& /*application*/, const std::string& /*argument*/,
               const ActionAnswer& /*answer*/) {}

constexpr std::array table = {
    CommandEntry{Command::toggle, "toggle", "Open Vantorel", call<&Application::openHistory>},
    CommandEntry{Command::search, "search", "Search & Filter…", call<&Application::openSearch>},
    CommandEntry{Command::menu, "menu", "", call<&Application::showStatusMenu>},
    CommandEntry{Command::pauseFifteenMinutes, "pause-15-minutes", "For 15 Minutes",
                 call<&Application::pauseFifteenMinutes>},
    CommandEntry{Command::pauseOneHour, "pause-1-hour", "For 1 Hour",
                 call<&Application::pauseOneHour>},
    CommandEntry{Command::pauseUntilTomorrow, "pause-until-tomorrow", "Until Tomorrow",
                 call<&Application::pauseUntilTomorrow>},
    CommandEntry{Command::resume, "resume", "Resume Now", call<&Application::resumeHistory>},
    CommandEntry{Command::togglePasswordManagers, "toggle-password-managers",
                 "Ignore Password Managers", call<&Application::togglePasswordManagerPrivacy>},
    CommandEntry{Command::excludeApp, "exclude-app", "Exclude",
                 call<&Application::excludeCurrentApp>},
    CommandEntry{Command::includeApp, "include-app", "Include", includeApp, true},
    CommandEntry{Command::toggleLaunchAtLogin, "toggle-launch-at-login", "Launch at Login",
                 call<&Application::toggleLaunchAtLogin>},
    CommandEntry{Command::shortcut, "shortcut", "Keyboard Shortcut…",
                 call<&Application::showShortcutPanel>},
    CommandEntry{Command::clear, "clear", "Clear History…",
                 call<&Application::confirmClearHistory>},
    CommandEntry{Command::newHistory, "new-history", "", call<&Application::startNewHistory>},
    CommandEntry{Command::about, "about", "About Vantorel", call<&Application::showAbout>},
    CommandEntry{Command::quit, "quit", "Quit Vantorel", call<&Application::quit>},
    // Whoever runs already is in the background.
    CommandEntry{Command::background, "background", "", doNothing},
    CommandEntry{Command::copy, "copy", "", copyEntry, true, false},
    CommandEntry{Command::importHistory, "import", "", importHistory, true, false},
    CommandEntry{Command::check, "check", "", nullptr},
    CommandEntry{Command::version, "version", "", nullptr},
    CommandEntry{Command::help, "help", "", nullptr},
};

}  // namespace

// In the order of the commands, of which the first has no entry.
static_assert(table.size() == static_cast<std::size_t>(Command::help));

const CommandEntry& entryOf(Command command) {
  return table.at(static_cast<std::size_t>(command) - 1);
}

const CommandEntry* entryNamed(std::string_view name) {
  const auto* found = std::find_if(table.begin(), table.end(),
                                   [&](const CommandEntry& entry) { return entry.name == name; });
  return found == table.end() ? nullptr : found;
}

std::vector<OfferedAction> offeredActions() {
  std::vector<OfferedAction> offered;
  for (const CommandEntry& entry : table) {
    if (entry.perform != nullptr) {
      offered.push_back({std::string(entry.name), entry.takesArgument, !entry.isOption});
    }
  }
  return offered;
}

void performAction(std::string_view action, const std::string& argument, Application& application,
                   const ActionAnswer& answer) {
  const auto* entry = entryNamed(action);
  if (entry != nullptr && entry->perform != nullptr) entry->perform(application, argument, answer);
}

}  // namespace vantorel
