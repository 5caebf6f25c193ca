// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <QWindow>
#include <memory>

#include "app/AppDelegate.h"
#include "app/CodeBlock.h"
#include "app/EditSymbolButton.h"
#include "app/HelpPanel.h"
#include "app/PrivacyPolicyPanel.h"
#include "app/ShortcutPanel.h"
#include "app/ShortcutPill.h"
#include "chrome/CheckBox.h"
#include "chrome/PushButton.h"
#include "chrome/ToastPanel.h"
#include "fakes/FakeDesktop.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto onboardingKey = "didShowOnboardingV2";

class AppWindowsTest : public testing::Test {
 protected:
  void start() {
    delegate = std::make_unique<AppDelegate>(desktop.ports());
    delegate->applicationDidFinishLaunching();
    desktop.dispatch.runQueued();
  }
  /// As from the second start on.
  void startAgain() {
    desktop.defaults.set(onboardingKey, true);
    start();
  }
  template <class Window>
  static std::vector<Window*> windows() {
    std::vector<Window*> all;
    const auto widgets = QApplication::topLevelWidgets();
    for (auto* widget : widgets) {
      auto* window = qobject_cast<Window*>(widget);
      if (window != nullptr && window->isVisible()) all.push_back(window);
    }
    return all;
  }
  template <class Window>
  static Window& window() {
    const auto all = windows<Window>();
    if (all.size() != 1) throw std::runtime_error("not exactly one such window");
    return *all.front();
  }
  static void press(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(window.windowHandle(), key, modifiers);
  }
  static void click(QWidget& window, const QString& title) {
    const auto buttons = window.findChildren<PushButton*>();
    for (auto* button : buttons) {
      if (button->text() == title) return button->click();
    }
    FAIL() << "no such button";
  }
  static std::vector<std::string> toasts() {
    std::vector<std::string> all;
    for (const auto* toast : windows<ToastPanel>())
      all.push_back(toast->windowTitle().toStdString());
    return all;
  }
  static bool historyIsShown() {
    const auto all = windows<VantorelPanel>();
    return std::any_of(all.begin(), all.end(),
                       [](const auto* panel) { return panel->windowTitle() == "Vantorel"; });
  }
  bool pressHotKey(KeyCode keyCode, HotKeyModifiers modifiers) {
    const bool pressed = desktop.hotKeys.press(keyCode, modifiers);
    desktop.dispatch.runQueued();
    return pressed;
  }

  FakeDesktop desktop;
  std::unique_ptr<AppDelegate> delegate;
};

TEST_F(AppWindowsTest, TheFirstStartShowsTheHelpOnceAMomentLater) {
  start();
  EXPECT_EQ(desktop.defaults.boolean(onboardingKey), true) << "before anything is shown";
  desktop.dispatch.advance(Seconds(0.29));
  EXPECT_THAT(windows<HelpPanel>(), IsEmpty());
  desktop.dispatch.advance(Seconds(0.02));
  EXPECT_EQ(window<HelpPanel>().height(), 438);
  press(window<HelpPanel>(), Qt::Key_Return);
  EXPECT_THAT(windows<HelpPanel>(), IsEmpty());

  delegate->applicationWillTerminate();
  start();
  desktop.dispatch.advance(Seconds(5));
  EXPECT_THAT(windows<HelpPanel>(), IsEmpty());
}

TEST_F(AppWindowsTest, WelcomesFromTheStartUntilTheWelcomeIsClosed) {
  start();
  EXPECT_TRUE(delegate->isWelcoming()) << "it is about to";
  desktop.dispatch.advance(Seconds(0.31));
  EXPECT_TRUE(delegate->isWelcoming());
  press(window<HelpPanel>(), Qt::Key_Return);
  EXPECT_FALSE(delegate->isWelcoming());
  delegate->showAbout();
  EXPECT_FALSE(delegate->isWelcoming()) << "that is no welcome";
  delegate->applicationWillTerminate();
  start();
  EXPECT_FALSE(delegate->isWelcoming());
}

TEST_F(AppWindowsTest, TheHelpIsShownWithoutAKeyringToo) {
  desktop.keychain.fail(FakeKeychain::Backend::login, keychainStatus::notAvailable);
  desktop.keychain.fail(FakeKeychain::Backend::dataProtection, keychainStatus::missingEntitlement);
  start();
  desktop.dispatch.advance(Seconds(0.31));
  EXPECT_EQ(windows<HelpPanel>().size(), 1U);
}

TEST_F(AppWindowsTest, AFlagThatIsFalseOrNoFlagCountsAsFirstStart) {
  desktop.defaults.set(onboardingKey, std::string("yes"));
  start();
  desktop.dispatch.advance(Seconds(0.31));
  EXPECT_EQ(windows<HelpPanel>().size(), 1U);
}

TEST_F(AppWindowsTest, NothingIsShownOnceTheProgramHasEnded) {
  start();
  delegate->applicationWillTerminate();
  desktop.dispatch.advance(Seconds(1));
  EXPECT_THAT(windows<HelpPanel>(), IsEmpty());
}

TEST_F(AppWindowsTest, AboutStandsInTheMiddleAndReplacesTheOneThatIsOpen) {
  startAgain();
  delegate->showAbout();
  auto* first = &window<HelpPanel>();
  EXPECT_EQ(first->pos(), QPoint(960 - 235, 30 + 525 - 285));
  delegate->showAbout();
  EXPECT_EQ(windows<HelpPanel>().size(), 1U);
  press(window<HelpPanel>(), Qt::Key_Return);
  EXPECT_THAT(windows<HelpPanel>(), IsEmpty());
}

TEST_F(AppWindowsTest, ThePolicyOpensFromTheHelpAndReturnClosesIt) {
  startAgain();
  delegate->showAbout();
  click(window<HelpPanel>(), "מדיניות הפרטיות המלאה");
  EXPECT_EQ(window<PrivacyPolicyPanel>().pos(), QPoint(960 - 260, 30 + 525 - 295));
  press(window<PrivacyPolicyPanel>(), Qt::Key_Return);
  EXPECT_THAT(windows<PrivacyPolicyPanel>(), IsEmpty());
  EXPECT_EQ(windows<HelpPanel>().size(), 1U);
  delegate->showPrivacyPolicy();
  click(window<PrivacyPolicyPanel>(), "סגור");
  EXPECT_THAT(windows<PrivacyPolicyPanel>(), IsEmpty());
}

TEST_F(AppWindowsTest, APolicyThatIsOpenChangesItsLanguageWithTheHelp) {
  startAgain();
  delegate->showAbout();
  window<HelpPanel>().onOtherLanguage();
  EXPECT_THAT(windows<PrivacyPolicyPanel>(), IsEmpty()) << "nobody asked for it";
  delegate->showPrivacyPolicy();
  EXPECT_EQ(window<PrivacyPolicyPanel>().windowTitle(), "Privacy Policy");
  window<HelpPanel>().onOtherLanguage();
  EXPECT_EQ(windows<PrivacyPolicyPanel>().size(), 1U);
  EXPECT_EQ(window<PrivacyPolicyPanel>().windowTitle(), "מדיניות הפרטיות");
}

TEST_F(AppWindowsTest, AShortcutChangedFromTheHelpIsShownThereAtOnce) {
  startAgain();
  delegate->showAbout();
  window<HelpPanel>().findChild<EditSymbolButton*>()->click();
  press(window<ShortcutPanel>(), Qt::Key_Space, Qt::MetaModifier | Qt::AltModifier);
  EXPECT_THAT(windows<ShortcutPanel>(), IsEmpty());
  EXPECT_EQ(window<HelpPanel>().findChild<ShortcutPill*>()->text(), "Super+Alt+Space");
  EXPECT_THAT(toasts(), ElementsAre("Shortcut set to Super+Alt+Space"));
  EXPECT_EQ(desktop.defaults.string("shortcut.keyLabel"), "Space");
  EXPECT_FALSE(pressHotKey(9, 0x300));
  EXPECT_TRUE(pressHotKey(49, 0x900));
  EXPECT_TRUE(historyIsShown());
}

TEST_F(AppWindowsTest, ATakenShortcutKeepsTheRecorderOpenAndTheOldOneInForce) {
  startAgain();
  desktop.hotKeys.take(40, 0x1800);
  delegate->showShortcutPanel();
  press(window<ShortcutPanel>(), Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(window<ShortcutPanel>().prompt(), "That shortcut is unavailable. Try another.");
  EXPECT_THAT(toasts(), IsEmpty());
  press(window<ShortcutPanel>(), Qt::Key_Escape);
  EXPECT_TRUE(pressHotKey(9, 0x300));
  EXPECT_TRUE(historyIsShown());
}

TEST_F(AppWindowsTest, TheRecorderStaysUntilTheDesktopHasAnswered) {
  desktop.hotKeys.setAnswersLater(true);
  startAgain();
  desktop.hotKeys.answer(HotKeyAnswer::held);
  delegate->showShortcutPanel();
  press(window<ShortcutPanel>(), Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_THAT(toasts(), IsEmpty());
  desktop.hotKeys.answer(HotKeyAnswer::taken);
  EXPECT_EQ(window<ShortcutPanel>().prompt(), "That shortcut is unavailable. Try another.");
  press(window<ShortcutPanel>(), Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
  desktop.hotKeys.answer(HotKeyAnswer::held);
  EXPECT_THAT(windows<ShortcutPanel>(), IsEmpty());
  EXPECT_THAT(toasts(), ElementsAre("Shortcut set to Alt+Ctrl+K"));
}

TEST_F(AppWindowsTest, WhereNoShortcutCanBeHadTheRecorderShowsTheLineForTheConfiguration) {
  desktop.hotKeys.setAnswersLater(true);
  startAgain();
  desktop.hotKeys.answer(HotKeyAnswer::absent);
  EXPECT_THAT(toasts(), IsEmpty()) << "it would come at each start";
  delegate->showShortcutPanel();
  EXPECT_EQ(window<ShortcutPanel>().prompt(), "Add this line to sway's configuration");
  EXPECT_EQ(window<ShortcutPanel>().findChild<CodeBlock*>()->text(),
            "bindsym --to-code Mod4+Shift+v exec vantorel --toggle");
  press(window<ShortcutPanel>(), Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
  desktop.hotKeys.answer(HotKeyAnswer::absent);
  EXPECT_EQ(window<ShortcutPanel>().findChild<CodeBlock*>()->text(),
            "bindsym --to-code Mod1+Ctrl+k exec vantorel --toggle");
  EXPECT_EQ(window<ShortcutPanel>().findChild<ShortcutPill*>()->text(), "Alt+Ctrl+K");
  EXPECT_EQ(desktop.defaults.string("shortcut.keyLabel"), "K");
  EXPECT_THAT(toasts(), IsEmpty());
}

TEST_F(AppWindowsTest, TheLineIsCopiedByOneClickAndIsNoEntry) {
  desktop.hotKeys.setHandlerInstallFails(true);
  startAgain();
  desktop.dispatch.advance(Seconds(5));
  delegate->showShortcutPanel();
  click(window<ShortcutPanel>(), "Copy");
  EXPECT_EQ(desktop.pasteboard.contents().string,
            "bindsym --to-code Mod4+Shift+v exec vantorel --toggle");
  EXPECT_THAT(toasts(), ElementsAre("Copied to clipboard."));
  EXPECT_EQ(windows<ShortcutPanel>().size(), 1U);
  desktop.pasteboard.setRefusingWrites(true);
  click(window<ShortcutPanel>(), "Copy");
  EXPECT_THAT(toasts(), ElementsAre("Could not copy."));
}

TEST_F(AppWindowsTest, WhereNoShortcutCanBeHadTheHelpNamesTheCommand) {
  desktop.hotKeys.setAnswersLater(true);
  startAgain();
  delegate->showAbout();
  EXPECT_EQ(window<HelpPanel>().findChild<ShortcutPill*>()->text(), "Super+Shift+V");
  desktop.hotKeys.answer(HotKeyAnswer::absent);
  EXPECT_EQ(window<HelpPanel>().findChild<ShortcutPill*>()->text(), "vantorel --toggle");
  delegate->showAbout();
  EXPECT_EQ(window<HelpPanel>().findChild<ShortcutPill*>()->text(), "vantorel --toggle");
}

TEST_F(AppWindowsTest, TheMenuSaysWhereNoApplicationIsToldOf) {
  const auto said = [this](const std::string& title) {
    const auto rows = desktop.statusItem.openMenu();
    return std::any_of(rows.begin(), rows.end(),
                       [&](const MenuRow& row) { return row.title == title && !row.enabled; });
  };
  desktop.tellsFront = false;
  desktop.name = "ubuntu:GNOME";
  startAgain();
  EXPECT_TRUE(said("GNOME does not tell which application is in front"));
  desktop.name = "sway";
  startAgain();
  EXPECT_TRUE(said("This desktop does not tell which application is in front"));
}

TEST_F(AppWindowsTest, TheDesktopsOwnListIsChangedByTheUsersClickAlone) {
  desktop.hasCommandShortcuts = true;
  desktop.hotKeys.setAnswersLater(true);
  desktop.name = "GNOME";
  startAgain();
  desktop.hotKeys.answer(HotKeyAnswer::absent);
  delegate->showAbout();
  delegate->showShortcutPanel();
  EXPECT_FALSE(desktop.commandShortcuts.isSet());
  EXPECT_EQ(window<ShortcutPanel>().prompt(), "GNOME can run this command by these keys");
  click(window<ShortcutPanel>(), "Add to GNOME");
  ASSERT_TRUE(desktop.commandShortcuts.isSet());
  EXPECT_EQ(desktop.commandShortcuts.entry->first, (HotKeyCombination{9, 0x300, "V"}));
  EXPECT_EQ(desktop.commandShortcuts.entry->second, "vantorel --toggle");
  EXPECT_EQ(window<HelpPanel>().findChild<ShortcutPill*>()->text(), "Super+Shift+V");
  EXPECT_EQ(window<ShortcutPanel>().prompt(), "GNOME runs this command by these keys");
  click(window<ShortcutPanel>(), "Remove");
  EXPECT_FALSE(desktop.commandShortcuts.isSet());
  EXPECT_EQ(window<HelpPanel>().findChild<ShortcutPill*>()->text(), "vantorel --toggle");
}

TEST_F(AppWindowsTest, KeysThatStandInTheDesktopsListFollowTheRecorder) {
  desktop.hasCommandShortcuts = true;
  desktop.hotKeys.setAnswersLater(true);
  startAgain();
  desktop.hotKeys.answer(HotKeyAnswer::absent);
  delegate->showShortcutPanel();
  press(window<ShortcutPanel>(), Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
  desktop.hotKeys.answer(HotKeyAnswer::absent);
  EXPECT_FALSE(desktop.commandShortcuts.isSet());
  click(window<ShortcutPanel>(), "Add to GNOME");
  press(window<ShortcutPanel>(), Qt::Key_J, Qt::ControlModifier | Qt::AltModifier);
  desktop.hotKeys.answer(HotKeyAnswer::absent);
  EXPECT_EQ(desktop.commandShortcuts.entry->first.label, "J");
}

TEST_F(AppWindowsTest, AListThatCannotBeChangedIsSaidSo) {
  desktop.hasCommandShortcuts = true;
  desktop.commandShortcuts.isReadOnly = true;
  desktop.hotKeys.setAnswersLater(true);
  startAgain();
  desktop.hotKeys.answer(HotKeyAnswer::absent);
  delegate->showShortcutPanel();
  click(window<ShortcutPanel>(), "Add to GNOME");
  EXPECT_THAT(toasts(), ElementsAre("Could not change the shortcuts of GNOME."));
  EXPECT_EQ(window<ShortcutPanel>().prompt(), "GNOME can run this command by these keys");
}

TEST_F(AppWindowsTest, ARecorderThatIsOpenLearnsThatNoShortcutCanBeHad) {
  desktop.hotKeys.setAnswersLater(true);
  startAgain();
  delegate->showShortcutPanel();
  EXPECT_EQ(window<ShortcutPanel>().findChild<CodeBlock*>(), nullptr);
  desktop.hotKeys.answer(HotKeyAnswer::absent);
  EXPECT_NE(window<ShortcutPanel>().findChild<CodeBlock*>(), nullptr);
}

TEST_F(AppWindowsTest, TheDesktopsQuestionComesAfterTheWelcome) {
  desktop.hotKeys.setAnswersLater(true);
  start();
  EXPECT_FALSE(desktop.hotKeys.mayAsk());
  desktop.hotKeys.answer(HotKeyAnswer::refused);
  desktop.dispatch.advance(Seconds(0.31));
  EXPECT_EQ(window<HelpPanel>().findChild<ShortcutPill*>()->text(), "vantorel --toggle");
  press(window<HelpPanel>(), Qt::Key_Return);
  EXPECT_TRUE(desktop.hotKeys.mayAsk());
  desktop.hotKeys.give("⌘⌥B");
  desktop.hotKeys.answer(HotKeyAnswer::held);
  EXPECT_THAT(toasts(), ElementsAre("Shortcut set to Super+Alt+B"));
  delegate->showShortcutPanel();
  EXPECT_EQ(window<ShortcutPanel>().findChild<ShortcutPill*>()->text(), "Super+Alt+B");
}

TEST_F(AppWindowsTest, TheRecorderAsksAgainWhoeverSaidNo) {
  desktop.hasCommandShortcuts = true;
  desktop.hotKeys.setAnswersLater(true);
  startAgain();
  EXPECT_TRUE(desktop.hotKeys.mayAsk());
  desktop.hotKeys.answer(HotKeyAnswer::refused);
  EXPECT_THAT(toasts(), IsEmpty());
  delegate->showShortcutPanel();
  EXPECT_EQ(window<ShortcutPanel>().prompt(), "The desktop gives these keys once you agree");
  click(window<ShortcutPanel>(), "Ask");
  EXPECT_FALSE(desktop.commandShortcuts.isSet());
  desktop.hotKeys.answer(HotKeyAnswer::refused);
  EXPECT_THAT(toasts(), ElementsAre("The desktop did not give Vantorel the shortcut."));
  click(window<ShortcutPanel>(), "Ask");
  desktop.hotKeys.answer(HotKeyAnswer::held);
  EXPECT_THAT(windows<ShortcutPanel>(), IsEmpty());
  EXPECT_THAT(toasts(), ElementsAre("Shortcut set to Super+Shift+V"));
}

TEST_F(AppWindowsTest, WhoHasTheKeysFromTheDesktopsListIsNotAsked) {
  desktop.hasCommandShortcuts = true;
  ASSERT_TRUE(desktop.commandShortcuts.set({9, 0x300, "V"}, "vantorel --toggle"));
  desktop.hotKeys.setAnswersLater(true);
  startAgain();
  EXPECT_FALSE(desktop.hotKeys.mayAsk());
  desktop.hotKeys.answer(HotKeyAnswer::refused);
  delegate->showShortcutPanel();
  click(window<ShortcutPanel>(), "Remove");
  EXPECT_FALSE(desktop.commandShortcuts.isSet());
}

TEST_F(AppWindowsTest, KeysThatTheDesktopGivesAreChangedInItsSettings) {
  startAgain();
  desktop.hotKeys.give("⌘⇧V");
  desktop.hotKeys.take(40, hotkeys::option | hotkeys::control);
  delegate->showShortcutPanel();
  press(window<ShortcutPanel>(), Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(window<ShortcutPanel>().prompt(),
            "These keys are changed in the desktop's own settings");
}

TEST_F(AppWindowsTest, EscapeClosesTheRecorderAndChangesNothing) {
  startAgain();
  delegate->showShortcutPanel();
  EXPECT_EQ(window<ShortcutPanel>().pos(), QPoint(960 - 175, 30 + 525 - 82));
  press(window<ShortcutPanel>(), Qt::Key_Escape);
  EXPECT_THAT(windows<ShortcutPanel>(), IsEmpty());
  EXPECT_EQ(desktop.keyboardGrabs.holder(), std::nullopt);
  EXPECT_FALSE(desktop.defaults.contains("shortcut.keyCode"));
  EXPECT_TRUE(pressHotKey(9, 0x300));
}

TEST_F(AppWindowsTest, ThereIsOneRecorderAtMost) {
  startAgain();
  delegate->showShortcutPanel();
  delegate->showShortcutPanel();
  EXPECT_EQ(windows<ShortcutPanel>().size(), 1U);
}

TEST_F(AppWindowsTest, TheShortcutInForceIsRecordedAndDoesNotOpenTheHistory) {
  startAgain();
  desktop.keyboardGrabs.setAvailable(false);
  delegate->showShortcutPanel();
  EXPECT_TRUE(pressHotKey(9, 0x300));
  EXPECT_THAT(windows<ShortcutPanel>(), IsEmpty());
  EXPECT_FALSE(historyIsShown());
  EXPECT_TRUE(pressHotKey(9, 0x300));
  EXPECT_TRUE(historyIsShown());
}

TEST_F(AppWindowsTest, TheSameShortcutPressedInTheRecorderClosesIt) {
  startAgain();
  delegate->showShortcutPanel();
  press(window<ShortcutPanel>(), Qt::Key_V, Qt::MetaModifier | Qt::ShiftModifier);
  EXPECT_THAT(windows<ShortcutPanel>(), IsEmpty());
  EXPECT_THAT(toasts(), IsEmpty());
}

TEST_F(AppWindowsTest, ResetBringsBackTheDefault) {
  startAgain();
  delegate->applyShortcut({40, 0x1800, "K"});
  delegate->showShortcutPanel();
  EXPECT_EQ(window<ShortcutPanel>().findChild<ShortcutPill*>()->text(), "Alt+Ctrl+K");
  click(window<ShortcutPanel>(), "Reset");
  EXPECT_THAT(windows<ShortcutPanel>(), IsEmpty());
  EXPECT_THAT(toasts(), ElementsAre("Shortcut set to Super+Shift+V"));
  EXPECT_FALSE(pressHotKey(40, 0x1800));
  EXPECT_TRUE(pressHotKey(9, 0x300));
}

TEST_F(AppWindowsTest, TheRecorderGivesTheKeyboardBackWhenTheProgramEnds) {
  startAgain();
  delegate->showShortcutPanel();
  QCoreApplication::processEvents();
  EXPECT_NE(desktop.keyboardGrabs.holder(), std::nullopt);
  delegate->applicationWillTerminate();
  EXPECT_EQ(desktop.keyboardGrabs.holder(), std::nullopt);
  delegate.reset();
}

TEST_F(AppWindowsTest, TheCheckBoxSwitchesTheLoginItemAndShowsWhatBecameOfIt) {
  startAgain();
  delegate->showAbout();
  auto* box = window<HelpPanel>().findChild<CheckBox*>();
  box->click();
  EXPECT_EQ(desktop.loginItem.status(), LoginItem::Status::enabled);
  EXPECT_TRUE(box->isChecked());
  EXPECT_THAT(toasts(), ElementsAre("Vantorel will launch at login."));
  desktop.loginItem.setRefusing(true);
  box->click();
  EXPECT_TRUE(box->isChecked()) << "it is still a login item";
  EXPECT_THAT(toasts(), ElementsAre("Could not change Launch at Login."));
}

TEST_F(AppWindowsTest, TheCheckBoxIsOffAndDisabledWhereThereAreNoLoginItems) {
  desktop.loginItem.setStatus(LoginItem::Status::unavailable);
  startAgain();
  delegate->showAbout();
  EXPECT_FALSE(window<HelpPanel>().findChild<CheckBox*>()->isEnabled());
}

TEST_F(AppWindowsTest, ThePermissionIsReadWithoutAskingAndSaidHonestly) {
  desktop.input.setTrusted(false);
  startAgain();
  delegate->showAbout();
  EXPECT_THAT(desktop.input.prompts(), ElementsAre(TrustPrompt::none));
  click(window<HelpPanel>(), "נדרשת הרשאת נגישות");
  EXPECT_THAT(desktop.input.prompts(), ElementsAre(TrustPrompt::none, TrustPrompt::ask));
  EXPECT_THAT(toasts(), ElementsAre("No automatic paste here. Press Ctrl+V to paste."));
  desktop.input.setTrusted(true);
  click(window<HelpPanel>(), "נדרשת הרשאת נגישות");
  EXPECT_THAT(toasts(), ElementsAre("This desktop allows automatic paste."));
  click(window<HelpPanel>(), "הרשאת הנגישות פעילה");
}

TEST_F(AppWindowsTest, WindowsGoWithTheirOwner) {
  startAgain();
  delegate->showAbout();
  delegate->showPrivacyPolicy();
  delegate->showShortcutPanel();
  delegate.reset();
  EXPECT_THAT(windows<VantorelPanel>(), IsEmpty());
}

}  // namespace
}  // namespace vantorel
