// SPDX-License-Identifier: MIT
#include "chrome/WheelTurn.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

constexpr int lines = 3;
constexpr double row = 49;

TEST(WheelTurn, ANotchIsAStrideOfThreeRows) {
  EXPECT_EQ(wheelTurn({.eighths = 120}, lines, row), (WheelTurn{147, true}));
  EXPECT_EQ(wheelTurn({.eighths = -240}, lines, row), (WheelTurn{-294, true}));
}

TEST(WheelTurn, PartsOfANotchComeToTheSame) {
  double distance = 0;
  for (int part = 0; part < 8; ++part) {
    const auto turn = wheelTurn({.eighths = -15}, lines, row);
    EXPECT_FALSE(turn.isStride) << "each is followed at once";
    distance += turn.distance;
  }
  EXPECT_EQ(distance, -147);
}

TEST(WheelTurn, PixelsOfAWheelAreNotBelieved) {
  EXPECT_EQ(wheelTurn({.eighths = 120, .pixels = 15}, lines, row), (WheelTurn{147, true}));
}

TEST(WheelTurn, AFingerIsFollowed) {
  EXPECT_EQ(wheelTurn({.eighths = 120, .pixels = 11.5, .isFinger = true}, lines, row),
            (WheelTurn{11.5, false}));
}

TEST(WheelTurn, AFingerWithoutPixelsMovesByShortLines) {
  EXPECT_EQ(wheelTurn({.eighths = 120, .isFinger = true}, lines, row), (WheelTurn{48, false}));
  EXPECT_EQ(wheelTurn({.eighths = -5, .isFinger = true}, lines, row), (WheelTurn{-2, false}));
}

TEST(WheelTurn, NothingIsNoTurn) {
  EXPECT_EQ(wheelTurn({}, lines, row), WheelTurn());
  EXPECT_EQ(wheelTurn({.isFinger = true}, lines, row), WheelTurn());
}

TEST(WheelTurn, ADeviceForFingersIsKnownByItsName) {
  EXPECT_TRUE(isTouchpad("SynPS/2 Synaptics TouchPad"));
  EXPECT_TRUE(isTouchpad("ELAN0501:01 04F3:3060 Touchpad"));
  EXPECT_TRUE(isTouchpad("Apple Inc. Magic Trackpad"));
  EXPECT_FALSE(isTouchpad("Logitech MX Master 3"));
  EXPECT_FALSE(isTouchpad(""));
}

}  // namespace
}  // namespace vantorel
