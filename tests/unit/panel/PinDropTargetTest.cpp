// SPDX-License-Identifier: MIT
#include "panel/PinDropTarget.h"

#include <gtest/gtest.h>

#include "panel/ListGeometry.h"

namespace vantorel {
namespace {

/// Three pins, then two rows that are not pinned.
std::vector<DropRow> rows() {
  std::vector<DropRow> result;
  for (std::size_t i = 0; i < 5; ++i) {
    result.push_back({Uuid::random(), ListGeometry::rowFrame(i, 3), i < 3});
  }
  return result;
}

TEST(PinDropTarget, TheUpperHalfMeansBeforeTheLowerHalfAfter) {
  const auto all = rows();
  EXPECT_EQ(pinDropTarget(all, all[2].id, {100, 49}), (PinDropTarget{1, DropPlace::before}));
  EXPECT_EQ(pinDropTarget(all, all[2].id, {100, 73}), (PinDropTarget{1, DropPlace::before}));
  EXPECT_EQ(pinDropTarget(all, all[2].id, {100, 74}), (PinDropTarget{1, DropPlace::after}));
  EXPECT_EQ(pinDropTarget(all, all[2].id, {100, 96}), (PinDropTarget{1, DropPlace::after}));
}

TEST(PinDropTarget, APinIsNotDroppedOnItself) {
  const auto all = rows();
  EXPECT_FALSE(pinDropTarget(all, all[1].id, {100, 60}));
}

TEST(PinDropTarget, OnlyPinsTakePins) {
  const auto all = rows();
  EXPECT_FALSE(pinDropTarget(all, all[0].id, {100, all[3].frame.midY()}));
  EXPECT_FALSE(pinDropTarget(all, all[0].id, {100, all[4].frame.midY()}));
}

TEST(PinDropTarget, BesideTheRowsThereIsNone) {
  const auto all = rows();
  EXPECT_FALSE(pinDropTarget(all, all[0].id, {100, -1}));
  EXPECT_FALSE(pinDropTarget(all, all[0].id, {-1, 60}));
  EXPECT_FALSE(pinDropTarget(all, all[0].id, {388, 60}));
  EXPECT_FALSE(pinDropTarget(all, all[0].id, {100, 48.5})) << "Between two rows";
  EXPECT_FALSE(pinDropTarget(all, all[0].id, {100, 150})) << "On the line below the pins";
  EXPECT_FALSE(pinDropTarget({}, all[0].id, {100, 10}));
}

TEST(DragScroll, RestsWhileThePointerIsAwayFromTheEdges) {
  EXPECT_EQ(dragScrollStep({100, 200, 1000}, 100), 0);
}

TEST(DragScroll, GoesUpAtTheTopUntilNothingIsAbove) {
  EXPECT_EQ(dragScrollStep({100, 200, 1000}, 10), -6);
  EXPECT_EQ(dragScrollStep({100, 200, 1000}, -50), -6);
  EXPECT_EQ(dragScrollStep({4, 200, 1000}, 10), -4);
  EXPECT_EQ(dragScrollStep({0, 200, 1000}, 10), 0);
}

TEST(DragScroll, GoesDownAtTheBottomUntilThePinsEnd) {
  EXPECT_EQ(dragScrollStep({0, 200, 244}, 190), 6);
  EXPECT_EQ(dragScrollStep({40, 200, 244}, 190), 4);
  EXPECT_EQ(dragScrollStep({44, 200, 244}, 190), 0);
  EXPECT_EQ(dragScrollStep({200, 200, 244}, 190), 0);
}

TEST(DragScroll, OfAListPushedBeyondItsTopDoesNothing) {
  EXPECT_EQ(dragScrollStep({-20, 200, 100}, 10), 0);
}

}  // namespace
}  // namespace vantorel
