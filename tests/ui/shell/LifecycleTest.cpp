// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "ui/shell/AppDelegateTest.h"

namespace vantorel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto storageUnavailable =
    "Secure storage is unavailable. Clipboard monitoring is paused.";

class Lifecycle : public AppDelegateTest {
 protected:
  void loseTheKeyring() {
    desktop.keychain.fail(FakeKeychain::Backend::login, keychainStatus::notAvailable);
    desktop.keychain.fail(FakeKeychain::Backend::dataProtection,
                          keychainStatus::missingEntitlement);
  }
};

TEST_F(Lifecycle, CapturesFromTheStartOn) {
  launch();
  copy("first");
  copy("second");
  EXPECT_THAT(history(), ElementsAre("second", "first"));
  EXPECT_THAT(toasts(), IsEmpty());
}

TEST_F(Lifecycle, WhatWasOnThePasteboardBeforeIsNotCaptured) {
  desktop.pasteboard.offerText("before");
  launch();
  desktop.dispatch.advance(Seconds(2));
  EXPECT_THAT(history(), IsEmpty());
  copy("after");
  EXPECT_THAT(history(), ElementsAre("after"));
}

TEST_F(Lifecycle, AnOwnPasteIsNoNewEntry) {
  launch();
  bringToFront("org.example.Notes", "Notes");
  copy("older");
  copy("newer");
  delegate->openHistory();
  press("Vantorel", Qt::Key_Down);
  press("Vantorel", Qt::Key_Return);
  desktop.dispatch.advance(Seconds(2));
  EXPECT_EQ(desktop.pasteboard.contents().string, "older");
  EXPECT_THAT(history(), ElementsAre("newer", "older"));
}

TEST_F(Lifecycle, WithoutAnyTargetThePanelOpensAndAChoiceIsOnlyCopied) {
  launch();
  copy("a text");
  delegate->openHistory();
  EXPECT_TRUE(panelIsShown());
  press("Vantorel", Qt::Key_Return);
  desktop.dispatch.runQueued();
  EXPECT_THAT(toasts(), ElementsAre("Copied to clipboard. Press Ctrl+V to paste."));
  EXPECT_EQ(desktop.pasteboard.contents().string, "a text");
}

TEST_F(Lifecycle, ThisApplicationOrAnAgentInFrontNeverBecomesTheTarget) {
  launch();
  bringToFront("org.example.Notes", "Notes");
  bringToFront("com.vantorel.Vantorel", "Vantorel");
  desktop.workspace.launch(
      RunningApplication{7, "org.example.agent", "Agent", ActivationPolicy::accessory});
  desktop.workspace.bringToFront(7);
  desktop.dispatch.advance(Seconds(1));
  EXPECT_THAT(desktop.statusItem.titles(), Contains("Exclude Notes"));
}

TEST_F(Lifecycle, ReopeningTogglesThePanelUnlessAWindowIsThere) {
  launch();
  delegate->applicationShouldHandleReopen();
  EXPECT_TRUE(panelIsShown());
  delegate->applicationShouldHandleReopen();
  EXPECT_TRUE(panelIsShown());
  delegate->openHistory();
  EXPECT_FALSE(panelIsShown());
  delegate->showAbout();
  delegate->applicationShouldHandleReopen();
  EXPECT_FALSE(panelIsShown());
  press("About Vantorel", Qt::Key_Return);
  delegate->applicationShouldHandleReopen();
  EXPECT_TRUE(panelIsShown());
}

TEST_F(Lifecycle, ANoticeIsNoWindow) {
  launch();
  delegate->pauseOneHour();
  EXPECT_EQ(toasts().size(), 1U);
  delegate->applicationShouldHandleReopen();
  EXPECT_TRUE(panelIsShown());
}

TEST_F(Lifecycle, WithoutAKeyringNothingIsCapturedAndTheRestWorks) {
  loseTheKeyring();
  launch();
  EXPECT_THAT(toasts(), ElementsAre(storageUnavailable));
  EXPECT_FALSE(desktop.pasteboard.hasChangeHandler());
  copy("not kept");
  desktop.dispatch.advance(Seconds(5));
  EXPECT_TRUE(desktop.hotKeys.press(9, 0x300));
  desktop.dispatch.runQueued();
  EXPECT_TRUE(panelIsShown());
  EXPECT_FALSE(desktop.statusItem.titles().empty());
  desktop.statusItem.choose("For 1 Hour");
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel — History Paused");
}

TEST_F(Lifecycle, WithoutAKeyringTheBarAndANotificationSayWhy) {
  loseTheKeyring();
  testing::internal::CaptureStderr();
  launch();
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("vantorel: nothing is recorded"));
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel — Nothing Recorded: No Keyring");
  EXPECT_EQ(desktop.statusItem.image().name, "com.vantorel.Vantorel-paused-symbolic");
  ASSERT_TRUE(desktop.notifications.shown());
  EXPECT_EQ(desktop.notifications.shown()->title, "Vantorel records nothing");
  terminate();
  EXPECT_FALSE(desktop.notifications.shown());
}

TEST_F(Lifecycle, WithoutAKeyringTheNotificationLetsTheUserBeAsked) {
  loseTheKeyring();
  launch();
  int asked = 0;
  delegate->onKeyWanted = [&](const std::string& notice) {
    ++asked;
    EXPECT_EQ(notice, "");
  };
  desktop.notifications.pressAction();
  EXPECT_EQ(asked, 1);
}

TEST_F(Lifecycle, AFolderThatAnotherProgramHasIsNoUnreadableHistory) {
  desktop.files.fail(FaultyFileSystem::Operation::claim, std::errc::device_or_resource_busy);
  testing::internal::CaptureStderr();
  launch();
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("another program uses it"));
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel — Nothing Recorded: Its Folder Cannot Be Used");
}

TEST_F(Lifecycle, WithEverythingThereNothingIsSaid) {
  testing::internal::CaptureStderr();
  launch();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel");
  EXPECT_EQ(desktop.notifications.posts(), 0);
}

TEST_F(Lifecycle, ATakenShortcutDoesNotStopTheStart) {
  desktop.hotKeys.take(9, 0x300);
  launch();
  EXPECT_THAT(toasts(),
              ElementsAre("Shortcut unavailable. Open Keyboard Shortcut to choose another."));
  copy("kept");
  EXPECT_THAT(history(), ElementsAre("kept"));
}

TEST_F(Lifecycle, EndsInItsOrder) {
  launch();
  EXPECT_TRUE(desktop.pasteboard.hasChangeHandler());
  int witnessed = 0;
  desktop.hotKeys.onUnregister = [&] {
    ++witnessed;
    EXPECT_FALSE(desktop.pasteboard.hasChangeHandler()) << "the watcher stops first";
    EXPECT_EQ(desktop.workspace.observerCount(), 1U) << "the focus is tracked to the last";
  };
  delegate->applicationWillTerminate();
  EXPECT_EQ(witnessed, 1);
  EXPECT_THAT(desktop.hotKeys.log(), ElementsAre("register", "unregister", "removeHandler"));
  EXPECT_EQ(desktop.workspace.observerCount(), 0U);
  EXPECT_FALSE(desktop.statusItem.isShown());
}

TEST_F(Lifecycle, NothingIsLeftRunning) {
  launch();
  delegate->pauseOneHour();
  delegate->confirmClearHistory();
  delegate->showShortcutPanel();
  delegate->showStatusMenu();
  terminate();
  EXPECT_EQ(desktop.dispatch.timerCount(), 0U);
  desktop.dispatch.advance(Seconds(5000));
  EXPECT_EQ(desktop.dispatch.queuedCount(), 0U);
}

TEST_F(Lifecycle, APasteboardThatChangesAtTheEndIsNotReadAnyMore) {
  launch();
  copy("kept");
  delegate->applicationWillTerminate();
  desktop.pasteboard.forgetReads();
  copy("too late");
  desktop.dispatch.advance(Seconds(2));
  EXPECT_THAT(desktop.pasteboard.reads(), IsEmpty());
  EXPECT_THAT(history(), ElementsAre("kept"));
}

TEST_F(Lifecycle, TheEndTouchesNeitherKeyNorLoginItemNorHistory) {
  launch();
  desktop.statusItem.choose("Launch at Login");
  copy("kept");
  const auto key = desktop.keychain.key(FakeKeychain::Backend::dataProtection);
  terminate();
  EXPECT_EQ(desktop.keychain.key(FakeKeychain::Backend::dataProtection), key);
  EXPECT_EQ(desktop.loginItem.status(), LoginItem::Status::enabled);
  EXPECT_THAT(history(), ElementsAre("kept"));
}

TEST_F(Lifecycle, StartsOverWhenTheKeyringIsUnlockedLater) {
  loseTheKeyring();
  launch();
  terminate();
  desktop.keychain.recover(FakeKeychain::Backend::login);
  desktop.keychain.recover(FakeKeychain::Backend::dataProtection);
  launch();
  EXPECT_TRUE(desktop.statusItem.isShown());
  copy("kept");
  EXPECT_THAT(history(), ElementsAre("kept"));
}

TEST_F(Lifecycle, SettingsOfTheWrongTypeInEveryKeyAreAsGoodAsNone) {
  const auto text = std::string("text");
  desktop.defaults.set("privacy.pausedUntil", text);
  desktop.defaults.set("privacy.ignorePasswordManagers", text);
  desktop.defaults.set("privacy.excludedBundleIDs", true);
  desktop.defaults.set("shortcut.keyCode", text);
  desktop.defaults.set("shortcut.modifiers", std::vector<std::string>{"a"});
  desktop.defaults.set("shortcut.keyLabel", std::int64_t{5});
  launch();
  copy("kept");
  EXPECT_THAT(history(), ElementsAre("kept"));
  EXPECT_EQ(desktop.statusItem.toolTip(), "Vantorel");
  EXPECT_EQ(desktop.statusItem.row("Ignore Password Managers").state, MenuState::off);
  EXPECT_TRUE(desktop.hotKeys.press(9, 0x300));
}

}  // namespace
}  // namespace vantorel
