// SPDX-License-Identifier: MIT
// What is shown, recorded and pasted while the screen is locked: nothing.
#include <gmock/gmock.h>

#include "ui/shell/AppDelegateTest.h"

namespace vantorel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class Lock : public AppDelegateTest {
 protected:
  Lock() { launch(); }
  void lock() { desktop.sessionLock.setLocked(true); }
  void unlock() {
    desktop.sessionLock.setLocked(false);
    desktop.dispatch.advance(Seconds(2));
  }
};

TEST_F(Lock, ThePanelGoes) {
  copy("a text");
  delegate->openHistory();
  ASSERT_TRUE(panelIsShown());
  lock();
  EXPECT_FALSE(panelIsShown());
  unlock();
  EXPECT_FALSE(panelIsShown()) << "it is not wanted any more";
}

TEST_F(Lock, NothingOpensAndNothingWaitsToOpen) {
  lock();
  delegate->openHistory();
  delegate->openSearch();
  delegate->showStatusMenu();
  delegate->showShortcutPanel();
  delegate->confirmClearHistory();
  delegate->showAbout();
  delegate->pauseOneHour();
  delegate->resumeHistory();
  EXPECT_THAT(visibleTitles(), IsEmpty());
  EXPECT_THAT(toasts(), IsEmpty());
  unlock();
  EXPECT_THAT(visibleTitles(), IsEmpty());
  delegate->openHistory();
  EXPECT_TRUE(panelIsShown());
}

TEST_F(Lock, AllOtherWindowsGo) {
  delegate->showAbout();
  delegate->showPrivacyPolicy();
  delegate->showShortcutPanel();
  delegate->confirmClearHistory();
  ASSERT_EQ(visibleTitles().size(), 4U);
  lock();
  EXPECT_THAT(visibleTitles(), IsEmpty());
  unlock();
  EXPECT_THAT(visibleTitles(), IsEmpty());
}

TEST_F(Lock, TheMenuGoes) {
  delegate->showStatusMenu();
  ASSERT_THAT(visibleTitles(), ElementsAre("Vantorel Menu"));
  lock();
  EXPECT_THAT(visibleTitles(), IsEmpty());
}

TEST_F(Lock, AWelcomeComesAgain) {
  delegate->showHelpPanel(true);
  const auto welcome = visibleTitles();
  lock();
  EXPECT_THAT(visibleTitles(), IsEmpty());
  EXPECT_TRUE(delegate->isWelcoming());
  unlock();
  EXPECT_EQ(visibleTitles(), welcome);
}

TEST_F(Lock, ANoticeGoes) {
  delegate->pauseOneHour();
  ASSERT_EQ(toasts().size(), 1U);
  lock();
  EXPECT_THAT(toasts(), IsEmpty());
  unlock();
  EXPECT_THAT(toasts(), IsEmpty());
}

TEST_F(Lock, AWelcomeThatWasAboutToComeComesOnce) {
  terminate();
  desktop.defaults.remove("didShowOnboardingV2");
  launch();
  lock();
  desktop.sessionLock.setLocked(false);
  const auto welcome = visibleTitles();
  ASSERT_EQ(welcome.size(), 1U);
  const auto* shown = window(QString::fromStdString(welcome.front()));
  desktop.dispatch.advance(Seconds(2));
  EXPECT_EQ(window(QString::fromStdString(welcome.front())), shown) << "it is not replaced";
}

TEST_F(Lock, TheTraysMenuSaysWhyNothingOpens) {
  const std::string reason = "The desktop says that the screen is locked";
  EXPECT_THAT(desktop.statusItem.titles(), Not(Contains(reason)));
  const int changes = desktop.statusItem.menuChanges();
  lock();
  EXPECT_THAT(desktop.statusItem.titles(), Contains(reason));
  EXPECT_EQ(desktop.statusItem.menuChanges(), changes + 1);
  unlock();
  EXPECT_THAT(desktop.statusItem.titles(), Not(Contains(reason)));
  EXPECT_EQ(desktop.statusItem.menuChanges(), changes + 2);
}

TEST_F(Lock, APasteUnderWayPressesNothing) {
  bringToFront("org.example.Notes", "Notes");
  copy("a text");
  delegate->openHistory();
  bringToFront("org.example.Other", "Other");
  press("Vantorel", Qt::Key_Return);
  lock();
  bringToFront("org.example.Notes", "Notes");
  unlock();
  EXPECT_THAT(desktop.input.posted(), IsEmpty());
}

TEST_F(Lock, WhatIsCopiedMeanwhileIsNotRecorded) {
  copy("before");
  lock();
  copy("meanwhile");
  unlock();
  EXPECT_THAT(history(), ElementsAre("before"));
  copy("after");
  EXPECT_THAT(history(), ElementsAre("after", "before"));
}

TEST_F(Lock, TheEndHearsOfNoLockAnyMore) {
  terminate();
  lock();
}

}  // namespace
}  // namespace vantorel
