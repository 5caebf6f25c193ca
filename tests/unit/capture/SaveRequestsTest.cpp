// SPDX-License-Identifier: MIT
// A program that is about to end asks for what it copied to be kept.
#include <gmock/gmock.h>

#include "unit/capture/WatchedPasteboard.h"

namespace vantorel {
namespace {

using testing::Eq;
using testing::IsEmpty;
using testing::Optional;
using testing::Pointee;
using testing::SizeIs;

class SaveRequestsTest : public WatchedPasteboard {
 protected:
  SaveRequestsTest() {
    puttingBack = true;
    watcher->start();
  }
  void offerAndRead(FakePasteboard::Owner owner) {
    pasteboard.offer(std::move(owner));
    dispatch().runQueued();
  }
  [[nodiscard]] std::shared_ptr<std::optional<bool>> ask() {
    auto heard = pasteboard.askToSave();
    dispatch().runQueued();
    return heard;
  }
};

TEST_F(SaveRequestsTest, WhatWasCapturedIsPutOnThePasteboard) {
  offerAndRead({.string = "to be kept"});
  EXPECT_THAT(ask(), Pointee(Optional(true)));
  EXPECT_EQ(pasteboard.contents().string, "to be kept");
  EXPECT_THAT(lost, SizeIs(1));
  EXPECT_EQ(count(), 1U);
}

TEST_F(SaveRequestsTest, OneThatAsksBeforeItsChangeWasSeenIsWaitedFor) {
  pasteboard.setAnnouncing(false);
  pasteboard.offerText("unseen");
  EXPECT_THAT(ask(), Pointee(Optional(true)));
  EXPECT_THAT(history.texts(), testing::ElementsAre("unseen"));
}

TEST_F(SaveRequestsTest, TheAnswerComesWhenTheReadingHasEnded) {
  offerAndRead({.string = "slow", .answeringOf = {{Form::string, Answering::whenReleased}}});
  const auto heard = ask();
  EXPECT_THAT(heard, Pointee(Eq(std::nullopt)));
  pasteboard.release();
  dispatch().runQueued();
  EXPECT_THAT(heard, Pointee(Optional(true)));
}

TEST_F(SaveRequestsTest, WhatIsNeverReadIsRefusedInTheEnd) {
  offerAndRead({.string = "mute", .answeringOf = {{Form::string, Answering::never}}});
  const auto heard = ask();
  EXPECT_THAT(heard, Pointee(Eq(std::nullopt)));
  dispatch().advance(FakePasteboard::timeLimit);
  EXPECT_THAT(heard, Pointee(Optional(false)));
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(SaveRequestsTest, WhatPrivacyIgnoresIsRefused) {
  offerAndRead({.string = "earlier"});
  offerAndRead({.types = {"org.nspasteboard.ConcealedType"}, .string = "secret"});
  EXPECT_THAT(ask(), Pointee(Optional(false)));
  privacy.setPausedUntil(advanced(dispatch().now(), Seconds(60)));
  offerAndRead({.string = "during a pause"});
  EXPECT_THAT(ask(), Pointee(Optional(false)));
  EXPECT_THAT(lost, IsEmpty());
  EXPECT_THAT(pasteboard.writes(), IsEmpty());
}

TEST_F(SaveRequestsTest, WhatWasNotCapturedIsRefused) {
  offerAndRead({.types = {"application/x-unknown"}});
  EXPECT_THAT(ask(), Pointee(Optional(false)));
  offerAndRead({.string = " \n"});
  EXPECT_THAT(ask(), Pointee(Optional(false)));
  offerAndRead({.string = "removed"});
  history->remove(newest().id);
  EXPECT_THAT(ask(), Pointee(Optional(false)));
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(SaveRequestsTest, WhatIsNoLongerThereIsRefused) {
  offerAndRead({.string = "older"});
  const auto heard = pasteboard.askToSave();
  pasteboard.offerText("newer");
  dispatch().runQueued();
  EXPECT_THAT(heard, Pointee(Optional(false)));
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(SaveRequestsTest, ANewerCopyEndsTheWaitOfOneThatIsStillRead) {
  offerAndRead({.string = "older", .answeringOf = {{Form::string, Answering::whenReleased}}});
  const auto heard = ask();
  offerAndRead({.string = "newer"});
  EXPECT_THAT(heard, Pointee(Optional(false)));
}

TEST_F(SaveRequestsTest, WhatCannotBeWrittenIsRefused) {
  puttingBack = false;
  offerAndRead({.string = "gone"});
  EXPECT_THAT(ask(), Pointee(Optional(false)));
  EXPECT_THAT(lost, SizeIs(1));
}

TEST_F(SaveRequestsTest, StoppingRefusesAndTakesNoMore) {
  offerAndRead({.string = "slow", .answeringOf = {{Form::string, Answering::whenReleased}}});
  const auto heard = ask();
  watcher->stop();
  EXPECT_THAT(heard, Pointee(Optional(false)));
  EXPECT_FALSE(pasteboard.hasSaveHandler());
}

}  // namespace
}  // namespace vantorel
