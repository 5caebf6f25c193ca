// SPDX-License-Identifier: MIT
#include "panel/RowPress.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

using Motion = RowPress::Motion;
using End = RowPress::End;
using Row = RowPress::Row;

constexpr Rect bounds{0, 0, 388, 48};

TEST(RowPress, WithoutMovementIsAClick) {
  RowPress press;
  press.begin({100, 20});
  EXPECT_TRUE(press.isPressed());
  EXPECT_EQ(press.release({100, 20}, bounds), End::click);
  EXPECT_FALSE(press.isPressed());
}

TEST(RowPress, ThatEndsElsewhereIsNoClick) {
  RowPress press;
  press.begin({100, 20});
  EXPECT_EQ(press.release({100, 48}, bounds), End::leftRow);
  press.begin({100, 20});
  EXPECT_EQ(press.release({-1, 20}, bounds), End::leftRow);
}

TEST(RowPress, OfAPinBecomesADragBeyondFivePoints) {
  RowPress press;
  press.begin({100, 20});
  EXPECT_EQ(press.moveTo({105, 20}, Row::pinned), Motion::none);
  EXPECT_EQ(press.moveTo({103, 24}, Row::pinned), Motion::none);
  EXPECT_EQ(press.moveTo({104, 24}, Row::pinned), Motion::startsDrag);
  EXPECT_EQ(press.moveTo({100, 20}, Row::pinned), Motion::drags);
  EXPECT_EQ(press.release({100, 20}, bounds), End::drop);
}

TEST(RowPress, OfAnotherRowIsAClickHoweverFarItMovedWithin) {
  RowPress press;
  press.begin({100, 20});
  EXPECT_EQ(press.moveTo({300, 40}, Row::notPinned), Motion::none);
  EXPECT_EQ(press.release({300, 40}, bounds), End::click);
}

TEST(RowPress, AfterADragTheNextOneBeginsAnew) {
  RowPress press;
  press.begin({100, 20});
  EXPECT_EQ(press.moveTo({110, 20}, Row::pinned), Motion::startsDrag);
  EXPECT_EQ(press.release({110, 20}, bounds), End::drop);
  EXPECT_TRUE(press.didDrag());
  press.begin({100, 20});
  EXPECT_FALSE(press.didDrag());
  EXPECT_EQ(press.release({100, 20}, bounds), End::click);
}

TEST(RowPress, GivenUpIsNothingAnyMore) {
  RowPress press;
  press.begin({100, 20});
  EXPECT_EQ(press.moveTo({110, 20}, Row::pinned), Motion::startsDrag);
  press.cancel();
  EXPECT_FALSE(press.isDragging());
  EXPECT_TRUE(press.didDrag());
  EXPECT_EQ(press.moveTo({150, 20}, Row::pinned), Motion::none);
  EXPECT_EQ(press.release({150, 20}, bounds), End::nothing);
}

TEST(RowPress, NeverBegunIsNothing) {
  RowPress press;
  EXPECT_EQ(press.moveTo({100, 20}, Row::pinned), Motion::none);
  EXPECT_EQ(press.release({100, 20}, bounds), End::nothing);
}

TEST(RowPress, IsForgottenWithItsEntry) {
  RowPress press;
  press.begin({100, 20});
  EXPECT_EQ(press.moveTo({110, 20}, Row::pinned), Motion::startsDrag);
  press.reset();
  EXPECT_FALSE(press.didDrag());
  EXPECT_EQ(press.release({110, 20}, bounds), End::nothing);
}

}  // namespace
}  // namespace vantorel
