// SPDX-License-Identifier: MIT
#include "panel/PreviewGeometry.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

using PreviewGeometry::limited;
using PreviewGeometry::maximumSize;
using PreviewGeometry::textSize;

TEST(PreviewGeometry, ALineOfTextHasALowPreview) { EXPECT_EQ(textSize(18), (Size{360, 92})); }

TEST(PreviewGeometry, ATextInBetweenHasAsMuchRoomAsItNeeds) {
  EXPECT_EQ(textSize(64), (Size{360, 92}));
  EXPECT_EQ(textSize(64.5), (Size{360, 93}));
  EXPECT_EQ(textSize(200), (Size{360, 228}));
}

TEST(PreviewGeometry, AVeryLongTextHasTheHighestPreview) {
  EXPECT_EQ(textSize(312), (Size{360, 340}));
  EXPECT_EQ(textSize(1e9), (Size{360, 340}));
}

TEST(PreviewGeometry, PicturesAndFilesHaveOneSize) {
  EXPECT_EQ(PreviewGeometry::mediaSize(), (Size{310, 320}));
}

TEST(PreviewGeometry, TheScreenLimitsIt) {
  EXPECT_EQ(maximumSize(Rect{0, 30, 1920, 1050}), (Size{1880, 990}));
  EXPECT_EQ(maximumSize(Rect{0, 0, 320, 240}), (Size{280, 180}));
  EXPECT_EQ(limited({360, 340}, maximumSize(Rect{0, 0, 320, 240})), (Size{280, 180}));
  EXPECT_EQ(limited({310, 92}, maximumSize(Rect{0, 0, 1000, 240})), (Size{310, 92}));
}

TEST(PreviewGeometry, OnTheTiniestScreenItStaysOfSomeUse) {
  EXPECT_EQ(maximumSize(Rect{0, 0, 100, 100}), (Size{160, 120}));
}

TEST(PreviewGeometry, WithoutAScreenOneIsSupposed) {
  EXPECT_EQ(maximumSize(std::nullopt), (Size{984, 708}));
}

TEST(PreviewGeometry, GoesWhereThereIsMoreRoomAndToTheRightIfThereIsAsMuch) {
  constexpr Rect screen{100, 0, 1000, 800};
  EXPECT_EQ(PreviewGeometry::edge({400, 100, 400, 300}, screen), PopoverEdge::right);
  EXPECT_EQ(PreviewGeometry::edge({399, 100, 400, 300}, screen), PopoverEdge::right);
  EXPECT_EQ(PreviewGeometry::edge({401, 100, 400, 300}, screen), PopoverEdge::left);
}

TEST(PreviewGeometry, ThePictureStandsAboveItsCaption) {
  constexpr Size size{310, 320};
  EXPECT_EQ(PreviewGeometry::mediaImage(size), (Rect{12, 12, 286, 272}));
  EXPECT_EQ(PreviewGeometry::mediaCaption(size), (Rect{12, 292, 286, 18}));
  EXPECT_EQ(PreviewGeometry::mediaCaption({20, 320}).width, 0);
}

TEST(PreviewGeometry, APictureWithoutRoomHasNoExtent) {
  const Rect image = PreviewGeometry::mediaImage({20, 30});
  EXPECT_EQ(image.width, 0);
  EXPECT_EQ(image.height, 0);
}

}  // namespace
}  // namespace vantorel
