// SPDX-License-Identifier: MIT
// What may happen between the answers of the pasteboard.
#include <gmock/gmock.h>

#include "unit/capture/WatchedPasteboard.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using ClipboardReadingTest = WatchedPasteboard;

/// As often as a reading can have an answer outstanding.
constexpr int enoughTurns = 8;

TEST_F(ClipboardReadingTest, TwentyCopiesInARowAreAllKept) {
  watcher->start();
  std::vector<std::string> copied;
  for (int i = 0; i < 20; ++i) {
    copied.insert(copied.begin(), "copy " + std::to_string(i));
    pasteboard.offerText(copied.front());
    dispatch().advance(Seconds(0.03));
  }
  EXPECT_EQ(history.texts(), copied);
}

TEST_F(ClipboardReadingTest, TheMainQueueRunsBetweenTheAnswers) {
  pasteboard.offer({.string = "slow", .answering = Answering::whenReleased});
  pollAndRead();
  int turns = 0;
  while (pasteboard.release() > 0) {
    EXPECT_EQ(count(), 0U);
    dispatch().runQueued();
    ++turns;
  }
  EXPECT_EQ(turns, 4);  // types, files, string, RTF with HTML
  EXPECT_THAT(history.texts(), ElementsAre("slow"));
}

TEST_F(ClipboardReadingTest, ANewerChangeSupersedesTheReadingAtEveryStep) {
  for (int steps = 0; steps < 4; ++steps) {
    pasteboard.offer(
        {.string = "older " + std::to_string(steps), .answering = Answering::whenReleased});
    pollAndRead();
    for (int i = 0; i < steps; ++i) {
      pasteboard.release();
      dispatch().runQueued();
    }
    const auto newer = "newer " + std::to_string(steps);
    copyText(newer);
    for (int i = 0; i < enoughTurns; ++i) {
      pasteboard.release();
      dispatch().runQueued();
    }
    EXPECT_EQ(history.texts().front(), newer);
    // The third answer is the text itself, which is kept without its richer forms.
    const bool hadItsText = steps == 3;
    EXPECT_EQ(count(), static_cast<std::size_t>(steps) + 1 + (hadItsText ? 1 : 0))
        << "after " << steps << " answers";
  }
}

TEST_F(ClipboardReadingTest, ATextIsNotLostOverARicherFormThatIsLate) {
  pasteboard.offer({.string = "older", .answeringOf = {{Form::html, Answering::whenReleased}}});
  pollAndRead();
  ASSERT_EQ(pasteboard.heldCount(), 1U);  // its text is read already
  workspace.setFront(keeper.processIdentifier);
  copyText("secret");
  pasteboard.release();
  dispatch().runQueued();
  EXPECT_THAT(history.texts(), ElementsAre("older"));
  EXPECT_EQ(newest().sourceBundleIdentifier, "com.acme.editor");
}

TEST_F(ClipboardReadingTest, ATextThatCameBeforeAPauseIsNotKeptInIt) {
  pasteboard.offer({.string = "older", .answeringOf = {{Form::html, Answering::whenReleased}}});
  pollAndRead();
  privacy.setPausedUntil(advanced(dispatch().now(), Seconds(60)));
  copyText("in the pause");
  pasteboard.release();
  dispatch().runQueued();
  EXPECT_EQ(count(), 0U);
}

TEST_F(ClipboardReadingTest, AnAnswerOnItsWayIsDroppedWithItsReading) {
  pasteboard.offerText("older");
  watcher->poll();
  ASSERT_TRUE(dispatch().runOne());  // the types are known, the next answer is queued
  pasteboard.offerText("newer");
  pollAndRead();
  EXPECT_THAT(history.texts(), ElementsAre("newer"));
}

TEST_F(ClipboardReadingTest, AnOwnerThatDoesNotAnswerCostsOnlyItsOwnContents) {
  watcher->start();
  pasteboard.offer({.string = "mute", .answering = Answering::never});
  dispatch().advance(FakePasteboard::timeLimit);
  EXPECT_EQ(count(), 0U);
  EXPECT_THAT(pasteboard.reads(), ElementsAre(Form::types));
  pasteboard.offerText("next");
  dispatch().runQueued();
  EXPECT_THAT(history.texts(), ElementsAre("next"));
}

TEST_F(ClipboardReadingTest, APictureDoesNotStandForATextThatDoesNotCome) {
  copy({.string = "cells", .image = picture(), .answeringOf = {{Form::string, Answering::never}}});
  dispatch().advance(FakePasteboard::timeLimit);
  EXPECT_THAT(pasteboard.reads(), ElementsAre(Form::types, Form::files, Form::string, Form::image));
  EXPECT_EQ(count(), 0U);
}

TEST_F(ClipboardReadingTest, ATextDoesNotStandForFilesThatDoNotCome) {
  copy({.string = "/tmp/a", .files = {"/tmp/a"}, .answeringOf = {{Form::files, Answering::never}}});
  dispatch().advance(FakePasteboard::timeLimit);
  EXPECT_EQ(count(), 0U);
}

TEST_F(ClipboardReadingTest, ATextThatTakesSecondsIsKept) {
  copy({.string = "cells",
        .image = picture(),
        .answeringOf = {{Form::string, Answering::whenReleased}}});
  dispatch().advance(Seconds(4.9));
  ASSERT_EQ(pasteboard.heldCount(), 1U);
  pasteboard.release();
  dispatch().runQueued();
  EXPECT_THAT(history.texts(), ElementsAre("cells"));
}

TEST_F(ClipboardReadingTest, ATextWhoseRicherFormsDoNotComeIsKeptWithoutThem) {
  copy({.string = "text",
        .rtf = toBytes("{\\rtf1}"),
        .html = toBytes("<p>"),
        .answeringOf = {{Form::rtf, Answering::never}}});
  EXPECT_EQ(count(), 0U);
  dispatch().advance(FakePasteboard::timeLimit);
  ASSERT_EQ(count(), 1U);
  EXPECT_EQ(newest().rtfData, std::nullopt);
  EXPECT_EQ(newest().htmlData.value().get(), toBytes("<p>"));
}

TEST_F(ClipboardReadingTest, AnOwnerThatEndsWhileItIsReadIsNoEntry) {
  pasteboard.offer({.string = "gone", .answering = Answering::whenReleased});
  pollAndRead();
  pasteboard.endOwner();
  pasteboard.release();
  dispatch().advance(Seconds(1));
  EXPECT_EQ(count(), 0U);
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(ClipboardReadingTest, APauseThatBeginsBeforeTheTypesAreKnownHolds) {
  pasteboard.offer({.string = "private", .answering = Answering::whenReleased});
  pollAndRead();
  privacy.setPausedUntil(advanced(dispatch().now(), Seconds(60)));
  pasteboard.release();
  dispatch().runQueued();
  EXPECT_THAT(pasteboard.reads(), ElementsAre(Form::types));
  EXPECT_EQ(count(), 0U);
}

TEST_F(ClipboardReadingTest, APauseThatEndsBeforeTheTypesAreKnownHasHeld) {
  privacy.setPausedUntil(advanced(dispatch().now(), Seconds(0.1)));
  pasteboard.offer({.string = "private", .answering = Answering::whenReleased});
  pollAndRead();
  dispatch().advance(Seconds(0.2));
  for (int i = 0; i < enoughTurns; ++i) {
    pasteboard.release();
    dispatch().runQueued();
  }
  EXPECT_EQ(count(), 0U);
}

TEST_F(ClipboardReadingTest, WhatWasAllowedBeforeThePauseIsKept) {
  pasteboard.offer({.string = "allowed",
                    .answering = Answering::whenReleased,
                    .answeringOf = {{Form::types, Answering::atOnce}}});
  pollAndRead();
  privacy.setPausedUntil(advanced(dispatch().now(), Seconds(60)));
  for (int i = 0; i < enoughTurns; ++i) {
    pasteboard.release();
    dispatch().runQueued();
  }
  EXPECT_THAT(history.texts(), ElementsAre("allowed"));
}

TEST_F(ClipboardReadingTest, TheSourceIsWhoWasInFrontWhenTheChangeWasSeen) {
  pasteboard.offer({.string = "from the editor", .answering = Answering::whenReleased});
  pollAndRead();
  workspace.setFront(keeper.processIdentifier);
  for (int i = 0; i < enoughTurns; ++i) {
    pasteboard.release();
    dispatch().runQueued();
  }
  ASSERT_EQ(count(), 1U);
  EXPECT_EQ(newest().sourceBundleIdentifier, "com.acme.editor");
}

TEST_F(ClipboardReadingTest, AnOwnWriteDropsTheReading) {
  pasteboard.offer({.string = "other", .answeringOf = {{Form::rtf, Answering::whenReleased}}});
  pollAndRead();
  ASSERT_EQ(pasteboard.heldCount(), 1U);  // its text is read already
  ASSERT_TRUE(pasteboard.writeString("own"));
  watcher->advanceLastChangeCount();
  pasteboard.release();
  pollAndRead();
  EXPECT_EQ(count(), 0U);
}

TEST_F(ClipboardReadingTest, APasteDuringTheReadingKeepsTheTextThatHasCome) {
  pasteboard.offer({.string = "other", .answeringOf = {{Form::rtf, Answering::whenReleased}}});
  pollAndRead();
  ASSERT_TRUE(pasteboard.writeString("own"));
  watcher->noteOwnWrite();
  pasteboard.release();
  pollAndRead();
  EXPECT_THAT(history.texts(), ElementsAre("other"));
}

TEST_F(ClipboardReadingTest, StoppingDropsTheReading) {
  watcher->start();
  pasteboard.offer({.string = "late", .answering = Answering::whenReleased});
  dispatch().runQueued();
  watcher->stop();
  for (int i = 0; i < enoughTurns; ++i) {
    pasteboard.release();
    dispatch().runQueued();
  }
  EXPECT_EQ(count(), 0U);
}

TEST_F(ClipboardReadingTest, AnswersThatComeAfterTheWatchersEndDoNothing) {
  watcher->start();
  pasteboard.offer({.string = "late", .answering = Answering::whenReleased});
  dispatch().runQueued();
  pasteboard.offerText("announced");  // this announcement is on its way too
  pasteboard.release();
  watcher.reset();
  dispatch().advance(Seconds(1));
  EXPECT_FALSE(pasteboard.hasChangeHandler());
  EXPECT_FALSE(pasteboard.hasOwnerExitHandler());
  EXPECT_EQ(count(), 0U);
}

TEST_F(ClipboardReadingTest, AWatcherThatWasNeverStartedLeavesAnothersHandlersAlone) {
  watcher->start();
  { const ClipboardWatcher other(*history, privacy, {pasteboard, workspace, dispatch(), lock}); }
  EXPECT_TRUE(pasteboard.hasChangeHandler());
}

}  // namespace
}  // namespace vantorel
