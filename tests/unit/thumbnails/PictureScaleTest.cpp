// SPDX-License-Identifier: MIT
#include "thumbnails/PictureScale.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

constexpr Size place{100, 50};  // 20,000 bytes at one pixel a point

TEST(PictureScale, IsTheScreensWhileThereIsRoom) {
  EXPECT_EQ(pictureScale(2, place, 800'000, 0), 2);
  EXPECT_EQ(pictureScale(2, place, 800'000, 1), 2);
  EXPECT_EQ(pictureScale(2, place, 800'000, 10), 2);
  EXPECT_EQ(pictureScale(1.25, place, 800'000, 10), 1.25);
}

TEST(PictureScale, IsLessWhenSoManyPicturesWouldTakeTooMuch) {
  EXPECT_DOUBLE_EQ(pictureScale(3, place, 800'000, 10), 2);
  EXPECT_DOUBLE_EQ(pictureScale(2, place, 450'000, 10), 1.5);
  EXPECT_LT(pictureScale(2, place, 800'000, 11), 2);
}

TEST(PictureScale, IsNeverLessThanOneUnlessTheScreensIs) {
  EXPECT_EQ(pictureScale(2, place, 1, 10), 1);
  EXPECT_EQ(pictureScale(2, place, 0, 1), 1);
  EXPECT_EQ(pictureScale(0.5, place, 800'000, 10), 0.5);
}

}  // namespace
}  // namespace vantorel
