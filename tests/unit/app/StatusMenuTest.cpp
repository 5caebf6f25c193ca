// SPDX-License-Identifier: MIT
#include "app/StatusMenu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace vantorel {
namespace {

using testing::ElementsAre;

const RunningApplication notes{42, "org.example.Notes", "Notes", ActivationPolicy::regular};

std::vector<std::string> titles(const std::vector<MenuRow>& rows) {
  std::vector<std::string> titles;
  for (const auto& row : rows) titles.push_back(row.isSeparator() ? "-" : row.title);
  return titles;
}

MenuRow find(const std::vector<MenuRow>& rows, const std::string& title) {
  const auto found = std::find_if(rows.begin(), rows.end(),
                                  [&](const MenuRow& row) { return row.title == title; });
  if (found != rows.end()) return *found;
  ADD_FAILURE() << "There is no row " << title;
  return {};
}

/// The row of that title in the menu for that state.
MenuRow rowOf(const StatusMenuState& state, const std::string& title) {
  return find(statusMenuRows(state), title);
}

TEST(StatusMenu, StandsInItsOrder) {
  EXPECT_THAT(titles(statusMenuRows({})),
              ElementsAre("Open Vantorel", "Search & Filter…", "Pause History",
                          "Ignore Password Managers", "Launch at Login", "Keyboard Shortcut…", "-",
                          "Clear History…", "About Vantorel", "-", "Quit Vantorel"));
}

TEST(StatusMenu, HasEveryRowWhenThereIsReasonForEach) {
  EXPECT_THAT(titles(statusMenuRows({.isPaused = true,
                                     .lastPasteTarget = notes,
                                     .excludedApps = {{"org.example.bank", "Bank"}}})),
              ElementsAre("Open Vantorel", "Search & Filter…", "Clipboard History Paused",
                          "Ignore Password Managers", "Exclude Notes", "Excluded Apps",
                          "Launch at Login", "Keyboard Shortcut…", "-", "Clear History…",
                          "About Vantorel", "-", "Quit Vantorel"));
}

TEST(StatusMenu, WhereNoApplicationIsToldOfNoneIsOfferedForExclusion) {
  const StatusMenuState state{
      .lastPasteTarget = notes,
      .sourcesUnknown = "GNOME does not tell which application is in front"};
  const auto row = rowOf(state, state.sourcesUnknown);
  EXPECT_FALSE(row.enabled);
  EXPECT_EQ(row.action, "");
  EXPECT_THAT(titles(statusMenuRows(state)), testing::Not(testing::Contains("Exclude Notes")));
}

TEST(StatusMenu, OfALockedScreenItSaysSoFirst) {
  const auto row = statusMenuRows({.isLocked = true}).front();
  EXPECT_EQ(row.title, "The desktop says that the screen is locked");
  EXPECT_FALSE(row.enabled);
  EXPECT_EQ(row.action, "");
}

TEST(StatusMenu, EachRowDoesWhatItSays) {
  const StatusMenuState state{
      .isPaused = true, .lastPasteTarget = notes, .excludedApps = {{"org.example.bank", "Bank"}}};
  const auto rows = statusMenuRows(state);
  const auto pause = find(rows, "Clipboard History Paused").submenu;
  const auto excluded = find(rows, "Excluded Apps").submenu;
  const auto action = [&](const std::string& title) { return find(rows, title).action; };
  EXPECT_EQ(action("Open Vantorel"), "toggle");
  EXPECT_EQ(action("Search & Filter…"), "search");
  EXPECT_EQ(action("Clipboard History Paused"), "");
  EXPECT_EQ(find(pause, "Resume Now").action, "resume");
  EXPECT_EQ(find(pause, "For 15 Minutes").action, "pause-15-minutes");
  EXPECT_EQ(find(pause, "For 1 Hour").action, "pause-1-hour");
  EXPECT_EQ(find(pause, "Until Tomorrow").action, "pause-until-tomorrow");
  EXPECT_EQ(action("Ignore Password Managers"), "toggle-password-managers");
  EXPECT_EQ(action("Exclude Notes"), "exclude-app");
  EXPECT_EQ(action("Excluded Apps"), "");
  EXPECT_EQ(find(excluded, "Include Bank").action, "include-app");
  EXPECT_EQ(action("Launch at Login"), "toggle-launch-at-login");
  EXPECT_EQ(action("Keyboard Shortcut…"), "shortcut");
  EXPECT_EQ(action("Clear History…"), "clear");
  EXPECT_EQ(action("About Vantorel"), "about");
  EXPECT_EQ(action("Quit Vantorel"), "quit");
}

TEST(StatusMenu, ThePauseMenuOffersThreeLengths) {
  EXPECT_THAT(titles(rowOf({}, "Pause History").submenu),
              ElementsAre("For 15 Minutes", "For 1 Hour", "Until Tomorrow"));
}

TEST(StatusMenu, WhilePausedThePauseMenuSaysSoAndBeginsWithResume) {
  EXPECT_THAT(titles(rowOf({.isPaused = true}, "Clipboard History Paused").submenu),
              ElementsAre("Resume Now", "For 15 Minutes", "For 1 Hour", "Until Tomorrow"));
}

TEST(StatusMenu, PasswordManagersAreSwitched) {
  EXPECT_EQ(rowOf({}, "Ignore Password Managers").state, MenuState::off);
  EXPECT_EQ(rowOf({.ignoresPasswordManagers = true}, "Ignore Password Managers").state,
            MenuState::on);
}

TEST(StatusMenu, OffersTheLastTargetForExclusionByItsName) {
  EXPECT_EQ(rowOf({.lastPasteTarget = notes}, "Exclude Notes").action, "exclude-app");
}

TEST(StatusMenu, CallsATargetWithoutANameTheCurrentApp) {
  auto nameless = notes;
  nameless.localizedName.reset();
  const auto rows = titles(statusMenuRows({.lastPasteTarget = nameless}));
  EXPECT_EQ(rows.at(4), "Exclude Current App");
}

TEST(StatusMenu, DoesNotOfferATargetWithoutAnIdentifier) {
  auto anonymous = notes;
  anonymous.bundleIdentifier.reset();
  EXPECT_EQ(statusMenuRows({.lastPasteTarget = anonymous}), statusMenuRows({}));
}

TEST(StatusMenu, DoesNotOfferWhatIsExcludedAlreadyByItsLowerCaseIdentifier) {
  auto shouting = notes;
  shouting.bundleIdentifier = "ORG.Example.NOTES";
  const auto rows = titles(statusMenuRows(
      {.lastPasteTarget = shouting, .excludedApps = {{"org.example.notes", "Notes"}}}));
  EXPECT_THAT(rows, testing::Not(testing::Contains("Exclude Notes")));
  EXPECT_THAT(rows, testing::Contains("Excluded Apps"));
}

TEST(StatusMenu, AnIdentifierThatWasStoredWithCapitalsHidesNothing) {
  EXPECT_EQ(rowOf({.lastPasteTarget = notes, .excludedApps = {{"org.example.Notes", "Notes"}}},
                  "Exclude Notes")
                .action,
            "exclude-app");
}

TEST(StatusMenu, ListsExcludedAppsByIdentifierWithTheirNames) {
  const auto menu =
      rowOf({.excludedApps = {{"com.b", "Abacus"}, {"com.a", "Zither"}}}, "Excluded Apps");
  EXPECT_THAT(titles(menu.submenu), ElementsAre("Include Zither", "Include Abacus"));
  EXPECT_EQ(menu.submenu.at(0).representedObject, "com.a");
  EXPECT_EQ(menu.submenu.at(1).representedObject, "com.b");
}

TEST(StatusMenu, WithNothingExcludedThereIsNoSuchMenu) {
  EXPECT_THAT(titles(statusMenuRows({})), testing::Not(testing::Contains("Excluded Apps")));
}

TEST(StatusMenu, LaunchAtLoginFollowsTheDesktop) {
  EXPECT_EQ(rowOf({}, "Launch at Login").state, MenuState::off);
  EXPECT_TRUE(rowOf({}, "Launch at Login").enabled);
  EXPECT_EQ(rowOf({.launchAtLogin = LoginItem::Status::enabled}, "Launch at Login").state,
            MenuState::on);
  const auto row = rowOf({.launchAtLogin = LoginItem::Status::unavailable}, "Launch at Login");
  EXPECT_EQ(row.state, MenuState::off);
  EXPECT_FALSE(row.enabled);
}

TEST(StatusMenu, OnlyQuitHasAKeyAndOnlySwitchesHaveAState) {
  for (const auto& row : statusMenuRows({.isPaused = true, .lastPasteTarget = notes})) {
    EXPECT_EQ(row.keyEquivalent, row.title == "Quit Vantorel" ? "q" : "") << row.title;
    const bool isSwitch = row.title == "Ignore Password Managers" || row.title == "Launch at Login";
    EXPECT_EQ(row.state != MenuState::none, isSwitch) << row.title;
    EXPECT_TRUE(row.enabled) << row.title;
  }
}

TEST(StatusMenu, TheToolTipSaysWhetherHistoryIsPaused) {
  EXPECT_EQ(statusToolTip(false), "Vantorel");
  EXPECT_EQ(statusToolTip(true), "Vantorel — History Paused");
  EXPECT_EQ(statusToolTip(true, Trouble::noKey), "Vantorel — History Paused");
  EXPECT_EQ(statusToolTip(false, Trouble::noKey), "Vantorel — Nothing Recorded: No Keyring");
}

TEST(StatusMenu, ATitleIsShownOnOneLine) {
  EXPECT_EQ(shownMenuTitle("Include a\nb\tc\x7f"), "Include a b c ");
  EXPECT_EQ(shownMenuTitle("Search & Filter…"), "Search & Filter…");
  EXPECT_EQ(shownMenuTitle("Include org/example/Notes"), "Include org/example/Notes");
}

TEST(StatusMenu, ATitleOfTenKilobytesIsCutWhereAReaderSeesIt) {
  const auto shown = shownMenuTitle("Include " + std::string(10'240, 'x'));
  EXPECT_EQ(shown, "Include " + std::string(71, 'x') + "…");
  EXPECT_EQ(shownMenuTitle(std::string(80, 'x')), std::string(80, 'x'));
  EXPECT_EQ(shownMenuTitle("\xff"), "\xEF\xBF\xBD");
}

}  // namespace
}  // namespace vantorel
