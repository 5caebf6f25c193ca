// SPDX-License-Identifier: MIT
#include "platform/linux/x11/TrayInk.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace vantorel {
namespace {

constexpr std::uint32_t dark = 0x1f1f1f;
constexpr std::uint32_t light = 0xf2f2f2;

TEST(TrayInk, IsWhatStandsOutFromTheBackground) {
  EXPECT_EQ(inkOn(0xffffff), dark);
  EXPECT_EQ(inkOn(0x000000), light);
  EXPECT_EQ(inkOn(0x2b2b2b), light);
  EXPECT_EQ(inkOn(0x444444), light);
  EXPECT_EQ(inkOn(0xc0c0c0), dark);
  EXPECT_EQ(inkOn(0x0000ff), light) << "blue is dark";
  EXPECT_EQ(inkOn(0x00ff00), dark) << "green is bright";
  EXPECT_EQ(inkOn(0xff0000), dark) << "red is brighter than the middle";
}

TEST(TrayInk, TheBackgroundIsTheMeanOfWhatIsSeen) {
  const std::array<std::uint32_t, 2> halves{0xff000000, 0xffff8040};
  EXPECT_EQ(backgroundOf(halves), 0x7f4020U);
  const std::array<std::uint32_t, 1> translucent{0x80402010};
  EXPECT_EQ(backgroundOf(translucent), 0x7f3f1fU) << "its colour without the alpha";
}

TEST(TrayInk, NothingIsKnownOfWhatIsMostlySeenThrough) {
  EXPECT_EQ(backgroundOf({}), std::nullopt);
  const std::array<std::uint32_t, 1> clear{0};
  EXPECT_EQ(backgroundOf(clear), std::nullopt);
  const std::array<std::uint32_t, 1> faint{0x7f7f7f7f};
  EXPECT_EQ(backgroundOf(faint), std::nullopt);
  const std::array<std::uint32_t, 2> overflowing{0xffffffff, 0x80ffffff};
  EXPECT_EQ(backgroundOf(overflowing), 0xffffffU) << "colours beyond their alpha";
}

TEST(TrayInk, AShapeKeepsItsEdges) {
  const Bitmap shape{{3, 1}, {3, 1}, {0xff000000, 0x80000000, 0}};
  EXPECT_EQ(inked(shape, 0xff8000), (std::vector<std::uint32_t>{0xffff8000, 0x80804000, 0}));
}

}  // namespace
}  // namespace vantorel
