// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/toolkit/KeyboardOrder.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

class KeyboardOrderTest : public ::testing::Test {
 protected:
  KeyboardOrder order;
  const int windows[3] = {};
  const KeyboardOrder::Window help = &windows[0];
  const KeyboardOrder::Window panel = &windows[1];
  const KeyboardOrder::Window question = &windows[2];
};

TEST_F(KeyboardOrderTest, NobodyHasItWhereNothingIsShown) {
  EXPECT_EQ(order.holder(), nullptr);
  order.drop(panel);
  order.release();
  EXPECT_EQ(order.holder(), nullptr);
}

TEST_F(KeyboardOrderTest, GoesBackTheWayItCame) {
  order.take(help);
  order.take(panel);
  order.take(question);
  EXPECT_EQ(order.holder(), question);
  order.drop(question);
  EXPECT_EQ(order.holder(), panel);
  order.drop(panel);
  EXPECT_EQ(order.holder(), help);
  order.drop(help);
  EXPECT_EQ(order.holder(), nullptr);
}

TEST_F(KeyboardOrderTest, PassesOverWhatHasGoneMeanwhile) {
  order.take(help);
  order.take(panel);
  order.take(question);
  order.drop(panel);
  EXPECT_EQ(order.holder(), question);
  order.drop(question);
  EXPECT_EQ(order.holder(), help);
}

TEST_F(KeyboardOrderTest, WhoWasLeftForAnotherProgramDoesNotGetItBack) {
  order.take(help);
  order.release();
  EXPECT_EQ(order.holder(), nullptr);
  order.take(panel);
  EXPECT_EQ(order.holder(), panel);
  order.drop(panel);
  EXPECT_EQ(order.holder(), nullptr);
}

TEST_F(KeyboardOrderTest, ReleasedTwoDeepItGoesToNobody) {
  order.take(panel);
  order.take(question);
  order.release();
  order.take(question);
  order.drop(question);
  EXPECT_EQ(order.holder(), nullptr);
}

TEST_F(KeyboardOrderTest, APressGetsItBack) {
  order.take(help);
  order.take(panel);
  order.take(help);
  EXPECT_EQ(order.holder(), help);
  order.drop(help);
  EXPECT_EQ(order.holder(), panel);
  order.release();
  order.take(panel);
  EXPECT_EQ(order.holder(), panel);
}

TEST_F(KeyboardOrderTest, NobodyGetsItThroughOneThatWasReleased) {
  order.take(help);
  order.release();
  order.take(panel);
  order.take(question);
  order.drop(panel);
  order.drop(question);
  EXPECT_EQ(order.holder(), nullptr);
}

}  // namespace
}  // namespace vantorel
