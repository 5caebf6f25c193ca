// SPDX-License-Identifier: MIT
#include "chrome/PopoverPlacement.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

constexpr Rect area{0, 0, 1000, 800};

TEST(PopoverPlacement, StandsBesideTheAnchorCentredOnIt) {
  const Rect anchor{300, 380, 400, 40};
  EXPECT_EQ(popoverFrame(anchor, PopoverEdge::right, 200, 100, area), (Rect{708, 350, 200, 100}));
  EXPECT_EQ(popoverFrame(anchor, PopoverEdge::left, 200, 100, area), (Rect{92, 350, 200, 100}));
}

TEST(PopoverPlacement, StaysWholeInTheArea) {
  EXPECT_EQ(popoverFrame({600, 10, 300, 40}, PopoverEdge::right, 200, 100, area),
            (Rect{794, 6, 200, 100}));
  EXPECT_EQ(popoverFrame({50, 770, 300, 40}, PopoverEdge::left, 200, 100, area),
            (Rect{6, 694, 200, 100}));
}

TEST(PopoverPlacement, ShowsItsBeginningWhereItCannotBeWhole) {
  const Rect small{100, 50, 150, 80};
  EXPECT_EQ(popoverFrame({120, 60, 50, 20}, PopoverEdge::right, 200, 100, small),
            (Rect{106, 56, 200, 100}));
}

}  // namespace
}  // namespace vantorel
