// SPDX-License-Identifier: MIT
#include "app/FocusTracker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/FakeWorkspace.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::Optional;

class FocusTrackerTest : public testing::Test {
 protected:
  ManualDispatch dispatch;
  FakeWorkspace workspace{dispatch};
  FocusTracker focus{workspace, dispatch};

  RunningApplication editor = workspace.launch(10, "com.acme.editor", "Editor");
  RunningApplication browser = workspace.launch(20, "com.acme.browser", "Browser");
  RunningApplication own = workspace.launch(30, "com.vantorel.Vantorel", "Vantorel");
  RunningApplication agent =
      workspace.launch({40, "com.acme.agent", "Agent", ActivationPolicy::accessory});
};

TEST_F(FocusTrackerTest, AnotherRegularApplicationMayReceiveAPaste) {
  EXPECT_TRUE(focus.isPasteTarget(editor));
}

TEST_F(FocusTrackerTest, ThisApplicationMayNot) {
  EXPECT_FALSE(focus.isPasteTarget(own));
  EXPECT_FALSE(focus.isPasteTarget({50, "com.vantorel.Vantorel", "Renamed"}));
  EXPECT_FALSE(focus.isPasteTarget({50, "org.example.copy", "Vantorel"}));
}

TEST_F(FocusTrackerTest, TheNameCountsOnlyWhenItIsExactlyOurs) {
  EXPECT_TRUE(focus.isPasteTarget({50, "org.example.copy", "vantorel"}));
  EXPECT_TRUE(focus.isPasteTarget({50, "org.example.copy", "Vantorel Manual"}));
  EXPECT_TRUE(focus.isPasteTarget({50, "org.example.copy", std::nullopt}));
}

TEST_F(FocusTrackerTest, ApplicationsWithoutAnIdentifierAreAllAlike) {
  EXPECT_TRUE(focus.isPasteTarget({50, std::nullopt, "Nameless"}));
  workspace.setOwnBundleIdentifier(std::nullopt);
  EXPECT_FALSE(focus.isPasteTarget({50, std::nullopt, "Nameless"}));
  EXPECT_TRUE(focus.isPasteTarget(editor));
}

TEST_F(FocusTrackerTest, BackgroundApplicationsMayNotReceiveAPaste) {
  EXPECT_FALSE(focus.isPasteTarget(agent));
  EXPECT_FALSE(
      focus.isPasteTarget({50, "com.acme.daemon", "Daemon", ActivationPolicy::prohibited}));
}

TEST_F(FocusTrackerTest, HasNoTargetWhenNoneWasEverInFront) {
  focus.startFocusTracking();
  EXPECT_EQ(focus.currentPasteTarget(), std::nullopt);
  workspace.setFront(own.processIdentifier);
  dispatch.advance(Seconds(1));
  EXPECT_EQ(focus.currentPasteTarget(), std::nullopt);
}

TEST_F(FocusTrackerTest, TheApplicationInFrontIsTheTargetBeforeAnyTracking) {
  workspace.setFront(editor.processIdentifier);
  EXPECT_THAT(focus.currentPasteTarget(), Optional(editor));
  EXPECT_THAT(focus.lastPasteTarget(), Optional(editor));
}

TEST_F(FocusTrackerTest, AnActivationIsRememberedAtOnce) {
  focus.startFocusTracking();
  workspace.bringToFront(editor.processIdentifier);
  dispatch.runQueued();
  EXPECT_THAT(focus.lastPasteTarget(), Optional(editor));
}

TEST_F(FocusTrackerTest, ActivatingThisApplicationOrAnAgentKeepsTheLastTarget) {
  focus.startFocusTracking();
  workspace.bringToFront(editor.processIdentifier);
  dispatch.runQueued();
  for (const auto& application : {own, agent}) {
    workspace.bringToFront(application.processIdentifier);
    dispatch.advance(Seconds(1));
    EXPECT_THAT(focus.lastPasteTarget(), Optional(editor));
    EXPECT_THAT(focus.currentPasteTarget(), Optional(editor));
  }
}

TEST_F(FocusTrackerTest, AChangeThatNobodyAnnouncedIsSeenAtTheNextTick) {
  focus.startFocusTracking();
  workspace.bringToFront(editor.processIdentifier);
  dispatch.runQueued();
  workspace.setFront(browser.processIdentifier);
  dispatch.advance(Seconds(0.39));
  EXPECT_THAT(focus.lastPasteTarget(), Optional(editor));
  dispatch.advance(Seconds(0.01));
  EXPECT_THAT(focus.lastPasteTarget(), Optional(browser));
}

TEST_F(FocusTrackerTest, KeepsTheLastTargetWhileNothingIsInFront) {
  workspace.setFront(editor.processIdentifier);
  focus.startFocusTracking();
  dispatch.advance(FocusTracker::interval);
  workspace.setFront(std::nullopt);
  dispatch.advance(Seconds(2));
  EXPECT_THAT(focus.currentPasteTarget(), Optional(editor));
}

TEST_F(FocusTrackerTest, LooksNoMoreWhileTheDesktopAnnouncesEachChange) {
  workspace.setAnnounces(true);
  focus.startFocusTracking();
  EXPECT_EQ(dispatch.timerCount(), 0U);
  workspace.bringToFront(editor.processIdentifier);
  dispatch.runQueued();
  EXPECT_THAT(focus.lastPasteTarget(), Optional(editor));

  workspace.setAnnounces(false);
  EXPECT_THAT(dispatch.repeatingIntervals(), ElementsAre(FocusTracker::interval));
  workspace.setFront(browser.processIdentifier);
  dispatch.advance(FocusTracker::interval);
  EXPECT_THAT(focus.lastPasteTarget(), Optional(browser));

  workspace.setAnnounces(true);
  EXPECT_EQ(dispatch.timerCount(), 0U);
  focus.stop();
  workspace.setAnnounces(false);
  EXPECT_EQ(dispatch.timerCount(), 0U);
}

TEST_F(FocusTrackerTest, WhoWasInFrontBeforeAnyAnnouncementIsRemembered) {
  workspace.setAnnounces(true);
  workspace.setFront(editor.processIdentifier);
  focus.startFocusTracking();
  workspace.setFront(own.processIdentifier);
  EXPECT_THAT(focus.currentPasteTarget(), Optional(editor));
}

TEST_F(FocusTrackerTest, RemembersTheWindowThatWasInFront) {
  focus.startFocusTracking();
  auto dialog = editor;
  dialog.window = 7;
  workspace.launch(dialog);
  workspace.bringToFront(editor.processIdentifier);
  dispatch.runQueued();
  EXPECT_THAT(focus.lastPasteTarget(), Optional(dialog));
}

TEST_F(FocusTrackerTest, StartingTwiceListensAndTicksOnce) {
  focus.startFocusTracking();
  focus.startFocusTracking();
  EXPECT_EQ(workspace.observerCount(), 1U);
  EXPECT_THAT(dispatch.repeatingIntervals(), ElementsAre(Seconds(0.4)));
}

TEST_F(FocusTrackerTest, StoppingEndsBothAndKeepsTheTarget) {
  workspace.setFront(editor.processIdentifier);
  focus.startFocusTracking();
  dispatch.advance(FocusTracker::interval);
  workspace.bringToFront(browser.processIdentifier);  // its announcement is on the way
  focus.stop();
  dispatch.advance(Seconds(1));
  EXPECT_EQ(workspace.observerCount(), 0U);
  EXPECT_EQ(dispatch.timerCount(), 0U);
  EXPECT_THAT(focus.lastPasteTarget(), Optional(editor));
}

TEST_F(FocusTrackerTest, AnAnnouncementThatComesAfterItsEndDoesNothing) {
  auto shortLived = std::make_unique<FocusTracker>(workspace, dispatch);
  shortLived->startFocusTracking();
  workspace.bringToFront(editor.processIdentifier);
  shortLived.reset();
  dispatch.advance(Seconds(1));
  EXPECT_EQ(workspace.observerCount(), 0U);
  EXPECT_EQ(dispatch.timerCount(), 0U);
}

}  // namespace
}  // namespace vantorel
