// SPDX-License-Identifier: MIT
#include "app/PauseExpiry.h"

#include <gtest/gtest.h>

#include "fakes/FakeUserDefaults.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

class PauseExpiryTest : public testing::Test {
 protected:
  PauseExpiryTest() {
    expiry.onExpired = [this] { ++expired; };
  }

  void pauseFor(double seconds) {
    privacy.setPausedUntil(advanced(dispatch.now(), Seconds(seconds)));
    expiry.watch();
  }

  ManualDispatch dispatch;
  FakeUserDefaults defaults;
  PrivacyPreferences privacy{defaults, dispatch};
  PauseExpiry expiry{privacy, dispatch};
  int expired = 0;
};

TEST_F(PauseExpiryTest, WithoutAPauseItWaitsForNothing) {
  expiry.watch();
  EXPECT_EQ(dispatch.timerCount(), 0U);
  EXPECT_EQ(expired, 0);
}

TEST_F(PauseExpiryTest, NobodyNeedsToListen) {
  expiry.onExpired = nullptr;
  pauseFor(10);
  dispatch.advance(Seconds(10));
  EXPECT_EQ(dispatch.timerCount(), 0U);
}

TEST_F(PauseExpiryTest, TellsOnceWhenThePauseHasRunOutAndWaitsNoMore) {
  pauseFor(900);
  dispatch.advance(Seconds(899.5));
  EXPECT_EQ(expired, 0);
  dispatch.advance(Seconds(0.5));
  EXPECT_EQ(expired, 1);
  EXPECT_EQ(dispatch.timerCount(), 0U);
  dispatch.advance(Seconds(1000));
  EXPECT_EQ(expired, 1);
}

TEST_F(PauseExpiryTest, TellsSoonAfterTheMachineWakesFromASleepThatOutlastedThePause) {
  pauseFor(3600);
  dispatch.advance(Seconds(5));
  const auto asleep = dispatch.now() + std::chrono::hours(8);
  dispatch.setNow(asleep);
  EXPECT_EQ(expired, 0);
  dispatch.advance(PauseExpiry::longestWait);
  EXPECT_EQ(expired, 1);
}

TEST_F(PauseExpiryTest, ALaterPauseTakesThePlaceOfTheRunningOne) {
  pauseFor(60);
  pauseFor(600);
  dispatch.advance(Seconds(599));
  EXPECT_EQ(expired, 0);
  dispatch.advance(Seconds(1));
  EXPECT_EQ(expired, 1);
}

TEST_F(PauseExpiryTest, AnEarlierPauseTakesThePlaceOfALaterOne) {
  pauseFor(86400);
  pauseFor(30);
  dispatch.advance(Seconds(30));
  EXPECT_EQ(expired, 1);
}

TEST_F(PauseExpiryTest, APauseThatWasEndedIsNotWaitedFor) {
  pauseFor(60);
  privacy.setPausedUntil(std::nullopt);
  expiry.watch();
  EXPECT_EQ(dispatch.timerCount(), 0U);
  dispatch.advance(Seconds(100));
  EXPECT_EQ(expired, 0);
}

TEST_F(PauseExpiryTest, TellsAlsoWhenSomebodyElseForgotTheExpiredPauseFirst) {
  pauseFor(5);
  dispatch.setNow(dispatch.now() + std::chrono::seconds(6));
  EXPECT_FALSE(privacy.isPaused());
  dispatch.advance(Seconds(10));
  EXPECT_EQ(expired, 1);
}

TEST_F(PauseExpiryTest, AClockThatWasSetBackMakesThePauseLonger) {
  pauseFor(60);
  dispatch.setNow(dispatch.now() - std::chrono::hours(1));
  dispatch.advance(Seconds(3600));
  EXPECT_EQ(expired, 0);
  dispatch.advance(Seconds(70));
  EXPECT_EQ(expired, 1);
}

TEST_F(PauseExpiryTest, StoppedItTellsNothing) {
  pauseFor(5);
  expiry.stop();
  dispatch.advance(Seconds(60));
  EXPECT_EQ(expired, 0);
}

}  // namespace
}  // namespace vantorel
