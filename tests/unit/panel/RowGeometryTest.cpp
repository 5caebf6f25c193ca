// SPDX-License-Identifier: MIT
#include "panel/RowGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

#include "panel/AspectFit.h"
#include "panel/ListGeometry.h"

namespace vantorel {

void PrintTo(const Rect& rect, std::ostream* out) {
  *out << rect.x << ", " << rect.y << ", " << rect.width << " × " << rect.height;
}

namespace {

constexpr double width = ListGeometry::listWidth;

TEST(RowGeometry, ATextHasASmallSymbolInTheMiddleOfItsHeight) {
  EXPECT_EQ(RowGeometry::image(ClipKind::text), (Rect{8, 14, 16, 20}));
}

TEST(RowGeometry, PicturesAndFilesHaveRoomForAThumbnail) {
  EXPECT_EQ(RowGeometry::image(ClipKind::image), (Rect{8, 6, 56, 36}));
  EXPECT_EQ(RowGeometry::image(ClipKind::files), (Rect{8, 6, 56, 36}));
}

TEST(RowGeometry, TheTitleReachesFromThePictureToThePin) {
  EXPECT_EQ(RowGeometry::title(ClipKind::text, width), (Rect{33, 6, 317, 18}));
  EXPECT_EQ(RowGeometry::title(ClipKind::image, width), (Rect{73, 6, 277, 18}));
}

TEST(RowGeometry, TheMetadataStandsBesideTheSourceIconAndEndsWithTheTitle) {
  for (const auto kind : {ClipKind::text, ClipKind::image, ClipKind::files}) {
    const Rect title = RowGeometry::title(kind, width);
    const Rect icon = RowGeometry::sourceIcon(kind);
    const Rect metadata = RowGeometry::metadata(kind, width);
    EXPECT_EQ(icon, (Rect{title.x, 27, 13, 13}));
    EXPECT_EQ(metadata.x, icon.maxX() + 5);
    EXPECT_EQ(metadata.maxX(), title.maxX());
    EXPECT_EQ(metadata.midY(), icon.midY());
    EXPECT_EQ(metadata.height, 14);
    EXPECT_GE(metadata.y, title.maxY() + 2);
  }
}

TEST(RowGeometry, ThePinAndTheDividerKeepToTheRight) {
  EXPECT_EQ(RowGeometry::pin(width), (Rect{356, 10, 28, 28}));
  EXPECT_EQ(RowGeometry::divider(ClipKind::text, width), (Rect{33, 47, 347, 1}));
  EXPECT_EQ(RowGeometry::divider(ClipKind::files, width), (Rect{73, 47, 307, 1}));
}

TEST(RowGeometry, TheSelectionIsAThinBarAtTheLeft) {
  EXPECT_EQ(RowGeometry::selectionBar(), (Rect{1, 12, 2, 24}));
}

TEST(RowGeometry, ADropIsShownAtTheEdgeWhereThePinWouldGo) {
  EXPECT_EQ(RowGeometry::dropLine(DropPlace::before, width), (Rect{8, 0, 372, 2}));
  EXPECT_EQ(RowGeometry::dropLine(DropPlace::after, width), (Rect{8, 46, 372, 2}));
}

TEST(AspectFit, FillsWhatItCanAndStaysInTheMiddle) {
  EXPECT_EQ(aspectFit({100, 100}, {0, 0, 56, 36}), (Rect{10, 0, 36, 36}));
  EXPECT_EQ(aspectFit({560, 100}, {8, 6, 56, 36}), (Rect{8, 19, 56, 10}));
  EXPECT_EQ(aspectFit({7, 9}, {0, 0, 70, 90}), (Rect{0, 0, 70, 90}));
  EXPECT_EQ(aspectFit({0.5, 1}, {0, 0, 0.5, 0.5}), (Rect{0.125, 0, 0.25, 0.5}));
}

TEST(AspectFit, AVeryThinPictureKeepsItsProportions) {
  const auto place = aspectFit({1, 20000}, {0, 0, 56, 36});
  ASSERT_TRUE(place);
  EXPECT_DOUBLE_EQ(place->height, 36);
  EXPECT_NEAR(place->width, 0.0018, 1e-9);
  EXPECT_DOUBLE_EQ(place->midX(), 28);
}

TEST(AspectFit, WhatHasNoExtentHasNoPlace) {
  EXPECT_FALSE(aspectFit({0, 0}, {0, 0, 56, 36}));
  EXPECT_FALSE(aspectFit({0, 10}, {0, 0, 56, 36}));
  EXPECT_FALSE(aspectFit({10, -1}, {0, 0, 56, 36}));
  EXPECT_FALSE(aspectFit({10, 10}, {0, 0, 0, 36}));
  EXPECT_FALSE(aspectFit({std::nan(""), 10}, {0, 0, 56, 36}));
}

}  // namespace
}  // namespace vantorel
