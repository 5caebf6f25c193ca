// SPDX-License-Identifier: MIT
#include "platform/Screens.h"

#include <gtest/gtest.h>

#include "fakes/FakeScreens.h"

namespace vantorel {
namespace {

class ScreensTest : public testing::Test {
 protected:
  ScreensTest() { screens_.setScreens({{left_, left_, 1}, {right_, right_, 2}}); }

  Rect left_{0, 0, 100, 100};
  Rect right_{100, 0, 100, 50};
  FakeScreens screens_;
};

TEST_F(ScreensTest, APointIsOnTheScreenThatContainsIt) {
  EXPECT_EQ(screenContaining(screens_, {99, 99})->frame, left_);
  EXPECT_EQ(screenContaining(screens_, {100, 0})->frame, right_);
  EXPECT_FALSE(screenContaining(screens_, {150, 70}));
}

TEST_F(ScreensTest, BesideAllScreensTheMainOneCounts) {
  EXPECT_EQ(screenNear(screens_, {150, 20})->frame, right_);
  EXPECT_EQ(screenNear(screens_, {150, 70})->frame, left_);
}

TEST_F(ScreensTest, WithoutScreensThereIsNone) {
  screens_.setScreens({});
  EXPECT_FALSE(screenNear(screens_, {0, 0}));
  EXPECT_FALSE(screenUnderMouse(screens_));
}

TEST_F(ScreensTest, FollowsTheMouse) {
  screens_.setMouseLocation({120, 10});
  EXPECT_EQ(screenUnderMouse(screens_)->frame, right_);
  screens_.setMouseLocation({-5, 10});
  EXPECT_EQ(screenUnderMouse(screens_)->frame, left_);
}

}  // namespace
}  // namespace vantorel
