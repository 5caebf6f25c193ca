// SPDX-License-Identifier: MIT
#include "app/ColumnLayout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ColumnLayout, RowsThatFitExactlyStandAsFarApartAsAsked) {
  EXPECT_THAT(columnTops({{20}, {30}, {10}}, 8, 76), ElementsAre(0, 28, 66));
}

TEST(ColumnLayout, WhatIsLeftOverPartsTheSections) {
  EXPECT_THAT(columnTops({{10}, {10, true}, {10}, {10, true}}, 5, 75), ElementsAre(0, 25, 40, 65));
}

TEST(ColumnLayout, WithoutSectionsWhatIsLeftOverStaysBelow) {
  EXPECT_THAT(columnTops({{10}, {10}}, 5, 100), ElementsAre(0, 15));
}

TEST(ColumnLayout, ASectionThatOpensTheColumnIsAtItsTop) {
  EXPECT_THAT(columnTops({{10, true}, {10}}, 5, 100), ElementsAre(0, 15));
}

TEST(ColumnLayout, RowsThatDoNotFitMoveEvenlyTogether) {
  // Seven points are missing, over three gaps.
  EXPECT_THAT(columnTops({{10}, {10, true}, {10}, {10}}, 5, 48), ElementsAre(0, 13, 26, 38));
}

TEST(ColumnLayout, RowsNeverOverlap) {
  EXPECT_THAT(columnTops({{10}, {10}, {10}}, 5, 12), ElementsAre(0, 10, 20));
}

TEST(ColumnLayout, AHeadingStandsCloserToWhatItHeads) {
  EXPECT_THAT(columnTops({{10}, {10, true, true}, {10}}, 8, 50), ElementsAre(0, 26, 40));
}

TEST(ColumnLayout, EachGapGivesWhatFallsToIt) {
  // A third of twelve points is missing.
  EXPECT_THAT(columnTops({{10}, {10, true, true}, {10}}, 8, 38), ElementsAre(0, 16, 28));
  EXPECT_THAT(columnTops({{10}, {10, true, true}, {10}}, 2, 34), ElementsAre(0, 12, 24));
}

TEST(ColumnLayout, OneRowAndNone) {
  EXPECT_THAT(columnTops({{10}}, 5, 100), ElementsAre(0));
  EXPECT_THAT(columnTops({}, 5, 100), IsEmpty());
}

}  // namespace
}  // namespace vantorel
