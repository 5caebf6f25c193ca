// SPDX-License-Identifier: MIT
#include "chrome/RubberBand.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

using RubberBand::Bounce;
using RubberBand::Push;

constexpr double view = 440;
constexpr double document = 1000;
constexpr double end = document - view;

TEST(RubberBand, AtTheTopTheListGivesWayDownwards) {
  EXPECT_EQ(RubberBand::bounce({50, 0, 0, view, document}), (Bounce{19, false}));
}

TEST(RubberBand, AtTheEndItGivesWayUpwardsAndShowsWhatIsBelow) {
  EXPECT_EQ(RubberBand::bounce({-50, end, end, view, document}), (Bounce{-19, true}));
}

TEST(RubberBand, AListThatIsSeenWholeGivesWayDownwardsWhateverThePush) {
  EXPECT_EQ(RubberBand::bounce({50, 0, 0, view, 100}), (Bounce{19, true}));
  EXPECT_EQ(RubberBand::bounce({-50, 0, 0, view, 100}), (Bounce{19, true}));
}

TEST(RubberBand, NoPushGoesFurtherThanTheReach) {
  EXPECT_EQ(RubberBand::bounce({5000, 0, 0, view, document}), (Bounce{26, false}));
}

TEST(RubberBand, APushThatScrollsDoesNotBounce) {
  EXPECT_FALSE(RubberBand::bounce({50, 100, 50, view, document}));
  EXPECT_FALSE(RubberBand::bounce({50, 0.5, 0, view, document}));
}

TEST(RubberBand, InTheMiddleNothingBounces) {
  EXPECT_FALSE(RubberBand::bounce({50, 200, 200, view, document}));
}

TEST(RubberBand, TinyTurnsNeverBounce) {
  EXPECT_FALSE(RubberBand::bounce({0.1, 0, 0, view, document}));
  EXPECT_FALSE(RubberBand::bounce({-0.1, end, end, view, document}));
  EXPECT_TRUE(RubberBand::bounce({0.11, 0, 0, view, document}));
}

TEST(RubberBand, HalfAPointFromAnEndCountsAsTheEnd) {
  EXPECT_TRUE(RubberBand::bounce({50, 0.5, 0.5, view, document}));
  EXPECT_TRUE(RubberBand::bounce({-50, end - 0.5, end - 0.5, view, document}));
}

TEST(RubberBand, BouncesAddUpToTheReach) {
  EXPECT_EQ(RubberBand::displaced(0, {19, false}), 19);
  EXPECT_EQ(RubberBand::displaced(19, {19, false}), 26);
  EXPECT_EQ(RubberBand::displaced(-19, {-19, false}), -26);
}

}  // namespace
}  // namespace vantorel
