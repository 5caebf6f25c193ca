// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <functional>

#include "chrome/CheckBox.h"
#include "chrome/SheetWindow.h"
#include "chrome/VantorelMenu.h"
#include "ui/shell/AppDelegateTest.h"

namespace vantorel {
namespace {

using namespace std::chrono;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const QString question = "Clear Clipboard History?";
constexpr auto pausedUntilKey = PrivacyPreferences::pausedUntilKey;
constexpr auto excludedKey = PrivacyPreferences::excludedBundleIdsKey;

class Commands : public AppDelegateTest {
 protected:
  Commands() { launch(); }

  void choose(const std::string& title) { desktop.statusItem.choose(title); }
  [[nodiscard]] std::vector<std::string> titles() const { return desktop.statusItem.titles(); }
  [[nodiscard]] std::vector<std::string> excluded() const {
    return desktop.defaults.stringArray(excludedKey).value_or(std::vector<std::string>());
  }
  /// Two texts, the older one pinned.
  void copyOneToKeepAndOneToDrop() {
    copy("pinned");
    delegate->openHistory();
    press("Vantorel", Qt::Key_P, Qt::ControlModifier);
    delegate->openHistory();
    copy("dropped");
    ASSERT_THAT(history(), ElementsAre("pinned", "dropped"));
  }
  static void clear() {
    const auto buttons = window(question)->findChildren<QPushButton*>();
    for (auto* button : buttons) {
      if (button->text() == "Clear") return button->click();
    }
    FAIL() << "there is no such button";
  }
  [[nodiscard]] static CheckBox* pinnedToo() { return window(question)->findChild<CheckBox*>(); }
};

TEST_F(Commands, TheItemIsThereFromTheStartOn) {
  EXPECT_TRUE(desktop.statusItem.isShown());
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel");
  EXPECT_EQ(desktop.statusItem.image().name, "com.vantorel.Vantorel-symbolic");
}

TEST_F(Commands, ThePictureHasAShapeInEverySizeAndAnotherOneWhilePaused) {
  const auto regular = desktop.statusItem.image();
  choose("For 1 Hour");
  const auto paused = desktop.statusItem.image();
  EXPECT_EQ(paused.name, "com.vantorel.Vantorel-paused-symbolic");
  for (const int side : {16, 19, 22, 64}) {
    const auto picture = regular.drawn(side);
    EXPECT_EQ(picture->pixelSize, (PixelSize{side, side}));
    EXPECT_EQ(paused.drawn(side)->pixelSize, picture->pixelSize);
    EXPECT_NE(paused.drawn(side)->pixels, picture->pixels);
    for (const std::uint32_t pixel : picture->pixels) EXPECT_EQ(pixel & 0xffffffU, 0U);
  }
}

TEST_F(Commands, AClickTogglesThePanel) {
  desktop.statusItem.click();
  EXPECT_TRUE(panelIsShown());
  desktop.statusItem.click();
  EXPECT_FALSE(panelIsShown());
}

TEST_F(Commands, OpenAndSearchComeFromTheMenuToo) {
  choose("Open Vantorel");
  EXPECT_TRUE(panelIsShown());
  choose("Search & Filter…");
  EXPECT_TRUE(panelIsShown()) << "searching never hides the panel";
  choose("Open Vantorel");
  EXPECT_FALSE(panelIsShown());
  desktop.statusItem.middleClick();
  EXPECT_TRUE(panelIsShown());
}

TEST_F(Commands, EachPauseLastsAsLongAsItSays) {
  struct Pause {
    std::string row;
    seconds length;
    std::string notice;
  };
  // Each replaces the one before, which would have ended later.
  for (const Pause& pause :
       {Pause{"Until Tomorrow", seconds(86400), "Clipboard history paused until tomorrow."},
        Pause{"For 1 Hour", seconds(3600), "Clipboard history paused for 1 hour."},
        Pause{"For 15 Minutes", seconds(900), "Clipboard history paused for 15 minutes."}}) {
    choose(pause.row);
    EXPECT_EQ(desktop.defaults.date(pausedUntilKey), desktop.dispatch.now() + pause.length);
    EXPECT_THAT(toasts(), ElementsAre(pause.notice));
    EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel — History Paused");
    EXPECT_THAT(titles(), Contains("Clipboard History Paused"));
  }
}

TEST_F(Commands, UntilTomorrowAtElevenInTheEveningIsElevenTheNextDay) {
  const Date evening = sys_days(year(2025) / 3 / 14) + hours(23);
  desktop.dispatch.setNow(evening);
  choose("Until Tomorrow");
  EXPECT_EQ(desktop.defaults.date(pausedUntilKey), evening + hours(24));
}

TEST_F(Commands, APauseThatHasRunOutLeavesMenuAndToolTipByItself) {
  choose("For 15 Minutes");
  EXPECT_THAT(desktop.statusItem.row("Clipboard History Paused").submenu.front().title,
              "Resume Now");
  desktop.dispatch.advance(Seconds(899));
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel — History Paused");
  desktop.dispatch.advance(Seconds(1));
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel");
  EXPECT_EQ(desktop.statusItem.image().name, "com.vantorel.Vantorel-symbolic");
  EXPECT_THAT(titles(), Contains("Pause History"));
  EXPECT_EQ(desktop.statusItem.row("Pause History").submenu.front().title, "For 15 Minutes");
  copy("captured again");
  EXPECT_THAT(history(), ElementsAre("captured again"));
}

TEST_F(Commands, APauseEndsDuringTheSleepOfTheMachine) {
  choose("For 1 Hour");
  desktop.dispatch.setNow(desktop.dispatch.now() + hours(9));
  EXPECT_THAT(titles(), Contains("Pause History")) << "the menu is right at once";
  desktop.dispatch.advance(PauseExpiry::longestWait);
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel");
}

TEST_F(Commands, APauseOutlivesARestart) {
  choose("Until Tomorrow");
  terminate();
  desktop.dispatch.setNow(desktop.dispatch.now() + hours(5));
  launch();
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel — History Paused");
  copy("not kept");
  EXPECT_THAT(history(), IsEmpty());
  desktop.dispatch.advance(hours(19));
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel");
}

TEST_F(Commands, ResumingLeavesOutWhatWasCopiedDuringThePause) {
  choose("For 1 Hour");
  desktop.pasteboard.setAnnouncing(false);
  desktop.pasteboard.offerText("during the pause");
  choose("Resume Now");
  EXPECT_THAT(toasts(), ElementsAre("Clipboard history resumed."));
  EXPECT_FALSE(desktop.defaults.contains(pausedUntilKey));
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel");
  desktop.dispatch.advance(Seconds(2));
  EXPECT_THAT(history(), IsEmpty());
  desktop.pasteboard.setAnnouncing(true);
  copy("afterwards");
  EXPECT_THAT(history(), ElementsAre("afterwards"));
}

TEST_F(Commands, PasswordManagersAreIgnoredOrNot) {
  EXPECT_EQ(desktop.statusItem.row("Ignore Password Managers").state, MenuState::on);
  choose("Ignore Password Managers");
  EXPECT_THAT(toasts(), ElementsAre("Password manager history enabled."));
  EXPECT_EQ(desktop.statusItem.row("Ignore Password Managers").state, MenuState::off);
  choose("Ignore Password Managers");
  EXPECT_THAT(toasts(), ElementsAre("Password managers will be ignored."));
  EXPECT_EQ(desktop.statusItem.row("Ignore Password Managers").state, MenuState::on);
}

TEST_F(Commands, TheLastTargetIsExcludedAndNothingOfItIsKept) {
  bringToFront("ORG.Example.Notes", "Notes");
  choose("Exclude Notes");
  EXPECT_THAT(toasts(), ElementsAre("Notes excluded from history."));
  EXPECT_THAT(excluded(), ElementsAre("org.example.notes"));
  EXPECT_THAT(titles(), Not(Contains("Exclude Notes")));
  EXPECT_THAT(titles(), Contains("Excluded Apps"));
  copy("a secret");
  EXPECT_THAT(history(), IsEmpty());
}

TEST_F(Commands, ExcludingTwiceLeavesOneEntry) {
  bringToFront("org.example.Notes", "Notes");
  const MenuRow row = desktop.statusItem.row("Exclude Notes");
  desktop.statusItem.choose(row);
  desktop.statusItem.choose(row);
  EXPECT_THAT(excluded(), ElementsAre("org.example.notes"));
}

TEST_F(Commands, AnApplicationWithoutANameIsCalledAnApp) {
  desktop.workspace.launch(
      RunningApplication{8, "org.example.quiet", std::nullopt, ActivationPolicy::regular});
  desktop.workspace.bringToFront(8);
  desktop.dispatch.runQueued();
  choose("Exclude Current App");
  EXPECT_THAT(toasts(), ElementsAre("App excluded from history."));
}

TEST_F(Commands, WithoutATargetExcludingDoesNothing) {
  delegate->excludeCurrentApp();
  desktop.workspace.launch(
      RunningApplication{8, std::nullopt, "Nameless", ActivationPolicy::regular});
  desktop.workspace.bringToFront(8);
  desktop.dispatch.runQueued();
  delegate->excludeCurrentApp();
  EXPECT_THAT(toasts(), IsEmpty());
  EXPECT_FALSE(desktop.defaults.contains(excludedKey));
}

TEST_F(Commands, AnExcludedAppIsIncludedAgain) {
  desktop.workspace.install("org.example.notes", "Notes");
  desktop.defaults.set(excludedKey,
                       std::vector<std::string>{"org.example.bank", "org.example.notes"});
  choose("Include Notes");
  EXPECT_THAT(toasts(), ElementsAre("App included in clipboard history."));
  EXPECT_THAT(excluded(), ElementsAre("org.example.bank"));
}

TEST_F(Commands, AnUninstalledAppIsCalledByItsIdentifier) {
  desktop.defaults.set(excludedKey, std::vector<std::string>{"org.example.notes"});
  desktop.workspace.install("org.example.notes", "Notes");
  EXPECT_EQ(desktop.statusItem.row("Include Notes").representedObject, "org.example.notes");
  desktop.workspace.uninstall("org.example.notes");
  choose("Include org.example.notes");
  EXPECT_THAT(excluded(), IsEmpty());
}

TEST_F(Commands, IdentifiersThatNobodyThoughtOfComeAndGoWhole) {
  for (const std::string& identifier :
       {std::string("a/b/../c"), std::string("line\nbreak"), std::string(10'240, 'x')}) {
    bringToFront(identifier, "Strange");
    choose("Exclude Strange");
    EXPECT_THAT(excluded(), ElementsAre(identifier));
    choose("Include " + identifier);
    EXPECT_THAT(excluded(), IsEmpty());
  }
}

TEST_F(Commands, LaunchAtLoginIsSwitchedAndReadAfresh) {
  choose("Launch at Login");
  EXPECT_THAT(toasts(), ElementsAre("Vantorel will launch at login."));
  EXPECT_EQ(desktop.statusItem.row("Launch at Login").state, MenuState::on);
  choose("Launch at Login");
  EXPECT_THAT(toasts(), ElementsAre("Launch at Login disabled."));
  desktop.loginItem.setStatus(LoginItem::Status::enabled);
  EXPECT_EQ(desktop.statusItem.row("Launch at Login").state, MenuState::on);
}

TEST_F(Commands, ALoginItemThatCannotBeChangedIsTold) {
  desktop.loginItem.setRefusing(true);
  choose("Launch at Login");
  EXPECT_THAT(toasts(), ElementsAre("Could not change Launch at Login."));
  desktop.loginItem.setStatus(LoginItem::Status::enabled);
  choose("Launch at Login");
  EXPECT_THAT(toasts(), ElementsAre("Could not change Launch at Login."));
  EXPECT_EQ(desktop.statusItem.row("Launch at Login").state, MenuState::on);
}

TEST_F(Commands, WhereThereAreNoLoginItemsNothingIsTried) {
  desktop.loginItem.setStatus(LoginItem::Status::unavailable);
  EXPECT_FALSE(desktop.statusItem.row("Launch at Login").enabled);
  delegate->toggleLaunchAtLogin();
  EXPECT_EQ(desktop.loginItem.requests(), 0);
  EXPECT_THAT(toasts(), IsEmpty());
}

TEST_F(Commands, ClearingAsksInTheseWords) {
  choose("Clear History…");
  auto* sheet = window(question);
  ASSERT_NE(sheet, nullptr);
  std::vector<std::string> texts;
  const auto labels = sheet->findChildren<QLabel*>();
  for (const auto* label : labels) texts.push_back(label->text().toStdString());
  EXPECT_THAT(texts,
              ElementsAre("Clear Clipboard History?",
                          "Removes history and image previews. Pinned clips are kept unless you "
                          "include them below."));
  std::vector<std::string> buttons;
  const auto all = sheet->findChildren<QPushButton*>();
  for (const auto* button : all) buttons.push_back(button->text().toStdString());
  EXPECT_THAT(buttons, testing::UnorderedElementsAre("Clear", "Cancel"));
  EXPECT_EQ(pinnedToo()->text(), "Also delete pinned clips");
  EXPECT_FALSE(pinnedToo()->isChecked());
  press(question, Qt::Key_Escape);
}

TEST_F(Commands, ClearingKeepsPinsAndSaysSo) {
  copyOneToKeepAndOneToDrop();
  choose("Clear History…");
  clear();
  EXPECT_THAT(toasts(), ElementsAre("History cleared. Pinned clips kept."));
  EXPECT_THAT(history(), ElementsAre("pinned"));
}

TEST_F(Commands, ClearingEverythingTakesThePinsAndTheKey) {
  copyOneToKeepAndOneToDrop();
  const auto key = desktop.keychain.key(FakeKeychain::Backend::dataProtection);
  choose("Clear History…");
  pinnedToo()->click();
  EXPECT_TRUE(pinnedToo()->isChecked());
  clear();
  EXPECT_THAT(toasts(), ElementsAre("All clipboard history cleared."));
  EXPECT_THAT(history(), IsEmpty());
  EXPECT_NE(desktop.keychain.key(FakeKeychain::Backend::dataProtection), key);
}

TEST_F(Commands, ClearingOnADiskThatCannotBeWrittenClaimsNothing) {
  using Operation = FaultyFileSystem::Operation;
  copyOneToKeepAndOneToDrop();
  for (const Operation operation : {Operation::writeNewFile, Operation::remove}) {
    desktop.files.fail(operation, std::errc::read_only_file_system);
  }
  choose("Clear History…");
  clear();
  EXPECT_THAT(toasts(), ElementsAre("Could not clear the history on the disk."));
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel — The History Cannot Be Saved");
  EXPECT_EQ(desktop.notifications.shown()->title, "Vantorel cannot save its history");
  desktop.files.recover();
  desktop.dispatch.advance(Seconds(10));
  EXPECT_THAT(history(), ElementsAre("pinned"));
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel");
}

TEST_F(Commands, EveryOtherWayOutOfTheQuestionLosesNothing) {
  copyOneToKeepAndOneToDrop();
  const std::vector<std::function<void()>> ways = {
      [] { press(question, Qt::Key_Return); },
      [] { press(question, Qt::Key_Escape); },
      [] { window(question)->close(); },
      [this] {
        terminate();
        launch();
      },
  };
  for (const auto& leave : ways) {
    choose("Clear History…");
    pinnedToo()->setChecked(true);
    leave();
    EXPECT_EQ(window(question), nullptr);
    EXPECT_THAT(history(), ElementsAre("pinned", "dropped"));
  }
}

TEST_F(Commands, TheBoxIsOffEachTime) {
  choose("Clear History…");
  pinnedToo()->setChecked(true);
  press(question, Qt::Key_Escape);
  choose("Clear History…");
  EXPECT_FALSE(pinnedToo()->isChecked());
}

TEST_F(Commands, AQuestionThatIsOpenIsNotAskedTwice) {
  choose("Clear History…");
  pinnedToo()->setChecked(true);
  choose("Clear History…");
  const auto shown = visibleTitles();
  EXPECT_EQ(std::count(shown.begin(), shown.end(), question.toStdString()), 1);
  EXPECT_TRUE(pinnedToo()->isChecked());
}

TEST_F(Commands, CopyingGoesOnWhileTheQuestionIsOpen) {
  choose("Clear History…");
  copy("meanwhile");
  EXPECT_THAT(history(), ElementsAre("meanwhile"));
  press(question, Qt::Key_Escape);
}

TEST_F(Commands, AKeyThatCannotBeReplacedStays) {
  copyOneToKeepAndOneToDrop();
  const auto key = desktop.keychain.key(FakeKeychain::Backend::dataProtection);
  desktop.keychain.failOnce(FakeKeychain::Operation::update, FakeKeychain::Backend::dataProtection,
                            keychainStatus::notAvailable);
  choose("Clear History…");
  pinnedToo()->setChecked(true);
  clear();
  EXPECT_EQ(desktop.keychain.key(FakeKeychain::Backend::dataProtection), key);
  copy("afterwards");
  EXPECT_THAT(history(), ElementsAre("afterwards"));
}

TEST_F(Commands, TheOtherWindowsOpen) {
  choose("Keyboard Shortcut…");
  choose("About Vantorel");
  EXPECT_THAT(visibleTitles(),
              testing::UnorderedElementsAre("Keyboard Shortcut", "About Vantorel"));
}

TEST_F(Commands, QuittingIsLeftToTheProgram) {
  int quits = 0;
  choose("Quit Vantorel");
  delegate->onQuit = [&] { ++quits; };
  choose("Quit Vantorel");
  EXPECT_EQ(quits, 1);
}

TEST_F(Commands, TheMenuPopsUpWhereItIsWanted) {
  desktop.statusItem.wantMenu({200, 100});
  auto* menu = qobject_cast<VantorelMenu*>(window("Vantorel Menu"));
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->pos(), QPoint(200, 100));
  std::vector<std::string> shown;
  const auto actions = menu->actions();
  for (const auto* action : actions) shown.push_back(action->text().toStdString());
  EXPECT_EQ(shown.size(), desktop.statusItem.openMenu().size());
  EXPECT_EQ(shown.at(1), "Search && Filter…") << "one ampersand is drawn";
  menu->close();
}

TEST_F(Commands, TheMenuAtThePointerDoesTheSame) {
  desktop.screens.setMouseLocation({50, 60});
  delegate->showStatusMenu();
  auto* menu = window("Vantorel Menu");
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->pos(), QPoint(50, 60));
  for (int i = 0; i < 4; ++i) QTest::keyClick(menu, Qt::Key_Down);
  QTest::keyClick(menu, Qt::Key_Return);
  EXPECT_THAT(toasts(), ElementsAre("Password manager history enabled."));
}

TEST_F(Commands, AMenuThatIsOpenGivesWayToTheNext) {
  delegate->showStatusMenu();
  delegate->showStatusMenu();
  EXPECT_THAT(visibleTitles(), ElementsAre("Vantorel Menu"));
  window("Vantorel Menu")->close();
}

TEST_F(Commands, AnEntryIsCopiedByItsIdentityAndNotRecordedAnew) {
  copy("older");
  copy("newer");
  const auto entry = entries().at(1);
  const auto writes = desktop.pasteboard.writes().size();
  std::vector<std::string> answers;
  delegate->copyEntry(entry.id.string(), [&](const auto& trouble) { answers.push_back(trouble); });
  EXPECT_THAT(answers, ElementsAre(""));
  ASSERT_EQ(desktop.pasteboard.writes().size(), writes + 2);
  EXPECT_EQ(desktop.pasteboard.writes().back().item.string, "older");
  EXPECT_THAT(toasts(), Contains("Copied to clipboard. Press Ctrl+V to paste."));
  desktop.dispatch.advance(Seconds(1));
  EXPECT_THAT(history(), ElementsAre("newer", "older"));
}

TEST_F(Commands, WhatIsNoEntryIsNotCopied) {
  copy("kept");
  const auto writes = desktop.pasteboard.writes().size();
  for (const char* const identity : {"", "1", "3F2504E0-4F89-41D3-9A0C-0305E82C3301"}) {
    std::string answer;
    delegate->copyEntry(identity, [&](const auto& trouble) { answer = trouble; });
    EXPECT_EQ(answer, "This item is no longer available.");
    EXPECT_THAT(toasts(), Contains("This item is no longer available.")) << identity;
  }
  EXPECT_EQ(desktop.pasteboard.writes().size(), writes);
}

}  // namespace
}  // namespace vantorel
