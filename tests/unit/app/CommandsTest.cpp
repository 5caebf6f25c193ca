// SPDX-License-Identifier: MIT
#include "app/Commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/ApplicationCommands.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Writes down what it is asked to do.
class RecordingApplication : public ApplicationCommands {
 public:
  std::vector<std::string> done;

  void openHistory() override { done.emplace_back("openHistory"); }
  void openSearch() override { done.emplace_back("openSearch"); }
  void showStatusMenu() override { done.emplace_back("showStatusMenu"); }
  void pauseFifteenMinutes() override { done.emplace_back("pauseFifteenMinutes"); }
  void pauseOneHour() override { done.emplace_back("pauseOneHour"); }
  void pauseUntilTomorrow() override { done.emplace_back("pauseUntilTomorrow"); }
  void resumeHistory() override { done.emplace_back("resumeHistory"); }
  void togglePasswordManagerPrivacy() override { done.emplace_back("togglePasswordManagers"); }
  void excludeCurrentApp() override { done.emplace_back("excludeCurrentApp"); }
  void removeExcludedApp(const std::string& bundleIdentifier) override {
    done.push_back("removeExcludedApp " + bundleIdentifier);
  }
  void toggleLaunchAtLogin() override { done.emplace_back("toggleLaunchAtLogin"); }
  void copyEntry(const std::string& identity, const ActionAnswer& /*answer*/) override {
    done.push_back("copyEntry " + identity);
  }
  void importHistory(const std::string& directory, const ActionAnswer& /*answer*/) override {
    done.push_back("importHistory " + directory);
  }
  void showShortcutPanel() override { done.emplace_back("showShortcutPanel"); }
  void confirmClearHistory() override { done.emplace_back("confirmClearHistory"); }
  void startNewHistory() override { done.emplace_back("startNewHistory"); }
  void showAbout() override { done.emplace_back("showAbout"); }
  void quit() override { done.emplace_back("quit"); }
};

TEST(Commands, EachActionDoesWhatItsNameSays) {
  for (const auto& [action, done] : std::vector<std::pair<std::string, std::string>>{
           {"toggle", "openHistory"},
           {"search", "openSearch"},
           {"menu", "showStatusMenu"},
           {"pause-15-minutes", "pauseFifteenMinutes"},
           {"pause-1-hour", "pauseOneHour"},
           {"pause-until-tomorrow", "pauseUntilTomorrow"},
           {"resume", "resumeHistory"},
           {"toggle-password-managers", "togglePasswordManagers"},
           {"exclude-app", "excludeCurrentApp"},
           {"include-app", "removeExcludedApp org.example.App"},
           {"toggle-launch-at-login", "toggleLaunchAtLogin"},
           {"shortcut", "showShortcutPanel"},
           {"clear", "confirmClearHistory"},
           {"new-history", "startNewHistory"},
           {"about", "showAbout"},
           {"quit", "quit"},
           {"copy", "copyEntry org.example.App"},
           {"import", "importHistory org.example.App"}}) {
    RecordingApplication application;
    performAction(action, "org.example.App", application);
    EXPECT_THAT(application.done, ElementsAre(done)) << action;
  }
}

TEST(Commands, WhatNothingIsCalledDoesNothing) {
  RecordingApplication application;
  for (const auto* name : {"", "Quit", "--quit", "open", "version", "help"}) {
    performAction(name, "", application);
  }
  EXPECT_THAT(application.done, IsEmpty());
}

TEST(Commands, EveryActionIsOfferedAndSomeTakeAText) {
  std::vector<std::string> plain;
  std::vector<std::string> withText;
  for (const auto& action : offeredActions()) {
    (action.takesText ? withText : plain).push_back(action.name);
  }
  EXPECT_THAT(plain, ElementsAre("toggle", "search", "menu", "pause-15-minutes", "pause-1-hour",
                                 "pause-until-tomorrow", "resume", "toggle-password-managers",
                                 "exclude-app", "toggle-launch-at-login", "shortcut", "clear",
                                 "new-history", "about", "quit", "background"));
  EXPECT_THAT(withText, ElementsAre("include-app", "copy", "import"));
}

TEST(Commands, AreFoundByThemselvesAndByTheirNames) {
  for (auto i = static_cast<int>(Command::toggle); i <= static_cast<int>(Command::help); ++i) {
    const auto& entry = entryOf(static_cast<Command>(i));
    EXPECT_EQ(static_cast<int>(entry.command), i);
    EXPECT_EQ(entryNamed(entry.name), &entry);
  }
  EXPECT_EQ(entryNamed(""), nullptr);
  EXPECT_EQ(entryNamed("Quit"), nullptr);
}

}  // namespace
}  // namespace vantorel
