// SPDX-License-Identifier: MIT
#include "panel/BackgroundFade.h"

#include <gtest/gtest.h>

#include "fakes/FakeAccessibilityPreferences.h"
#include "fakes/ManualDispatch.h"

namespace vantorel {
namespace {

class BackgroundFadeTest : public testing::Test {
 protected:
  BackgroundFadeTest() {
    fade_.onStep = [this] { ++steps_; };
  }

  ManualDispatch dispatch_;
  FakeAccessibilityPreferences accessibility_;
  BackgroundFade fade_{dispatch_, accessibility_};
  int steps_ = 0;
};

TEST_F(BackgroundFadeTest, RestsAtItsEnd) {
  EXPECT_EQ(fade_.progress(), 1);
  EXPECT_EQ(dispatch_.timerCount(), 0U);
}

TEST_F(BackgroundFadeTest, TakesAnEighthOfASecondAndThenRests) {
  fade_.start();
  EXPECT_EQ(fade_.progress(), 0);
  dispatch_.advance(Seconds(0.06));
  EXPECT_NEAR(fade_.progress(), 0.5, 0.15);
  EXPECT_GE(steps_, 3);
  dispatch_.advance(Seconds(0.08));
  EXPECT_EQ(fade_.progress(), 1);
  EXPECT_EQ(dispatch_.timerCount(), 0U);
}

TEST_F(BackgroundFadeTest, IsOverAtOnceForWhoWantsLittleMotion) {
  accessibility_.setReduceMotion(true);
  fade_.start();
  EXPECT_EQ(fade_.progress(), 1);
  EXPECT_EQ(dispatch_.timerCount(), 0U);
}

TEST_F(BackgroundFadeTest, AClockThatWasSetBackEndsItWhereItWouldEnd) {
  fade_.start();
  dispatch_.setNow(advanced(dispatch_.now(), Seconds(-3600)));
  dispatch_.advance(Seconds(0.03));
  EXPECT_EQ(fade_.progress(), 1);
  EXPECT_EQ(dispatch_.timerCount(), 0U);
}

TEST_F(BackgroundFadeTest, FinishedTakesNoMoreSteps) {
  fade_.start();
  fade_.finish();
  dispatch_.advance(Seconds(1));
  EXPECT_EQ(steps_, 0);
  EXPECT_EQ(fade_.progress(), 1);
}

}  // namespace
}  // namespace vantorel
