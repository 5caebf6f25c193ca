// SPDX-License-Identifier: MIT
#include "panel/ListGeometry.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

using namespace ListGeometry;

std::vector<ClipItem> items(std::size_t pinned, std::size_t unpinned) {
  std::vector<ClipItem> list(pinned + unpinned);
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (i < pinned) list[i].isPinned = true;
  }
  return list;
}

TEST(ListGeometry, TheBoundaryStandsAfterThePins) {
  EXPECT_EQ(pinBoundary(items(3, 2)), 3U);
  EXPECT_EQ(pinBoundary(items(1, 1)), 1U);
}

TEST(ListGeometry, OnlyPinsOrNoPinsHaveNoBoundary) {
  EXPECT_EQ(pinBoundary(items(0, 0)), std::nullopt);
  EXPECT_EQ(pinBoundary(items(4, 0)), std::nullopt);
  EXPECT_EQ(pinBoundary(items(0, 4)), std::nullopt);
}

TEST(ListGeometry, AnEntryThatSaysNotPinnedEndsThePins) {
  auto list = items(2, 1);
  list[1].isPinned = false;
  EXPECT_EQ(pinBoundary(list), 1U);
}

TEST(ListGeometry, TheDocumentHoldsRowsGapsSeparatorAndRoomBelow) {
  EXPECT_EQ(documentHeight(5, 3), 48 * 5 + 4 + 12 + 18);
  EXPECT_EQ(documentHeight(5, 3), 274);
  EXPECT_EQ(documentHeight(5, std::nullopt), 262);
  EXPECT_EQ(documentHeight(1, std::nullopt), 66);
}

TEST(ListGeometry, AnEmptyListAndItsPanelHaveTheirOwnHeights) {
  const double list = listHeight(0, std::nullopt, SearchBar::hidden);
  EXPECT_EQ(list, 74);
  EXPECT_EQ(panelHeight(list, SearchBar::hidden), 94);
  EXPECT_EQ(panelHeight(listHeight(0, std::nullopt, SearchBar::shown), SearchBar::shown), 133);
}

TEST(ListGeometry, AShortListIsAsHighAsItsRows) {
  EXPECT_EQ(listHeight(1, std::nullopt, SearchBar::hidden), 48);
  EXPECT_EQ(listHeight(3, std::nullopt, SearchBar::hidden), 146);
  EXPECT_EQ(listHeight(3, 1, SearchBar::hidden), 158);
  EXPECT_EQ(listHeight(8, std::nullopt, SearchBar::hidden), 391);
}

TEST(ListGeometry, ALongListShowsNineRowsAtMost) {
  EXPECT_EQ(listHeight(9, std::nullopt, SearchBar::hidden), 440);
  EXPECT_EQ(listHeight(20, std::nullopt, SearchBar::hidden), 440);
  EXPECT_EQ(listHeight(20, 3, SearchBar::hidden), 448);
  EXPECT_EQ(listHeight(20, 3, SearchBar::shown), 409);
  EXPECT_EQ(listHeight(20, std::nullopt, SearchBar::shown), 409);
}

TEST(ListGeometry, ABoundaryBelowWhatIsSeenTakesNoRoom) {
  EXPECT_EQ(listHeight(20, 9, SearchBar::hidden), 440);
  EXPECT_EQ(listHeight(20, 8, SearchBar::hidden), 448);
}

TEST(ListGeometry, ThePanelAddsMarginsAndSearchBarButIsNeverTooLow) {
  EXPECT_EQ(panelHeight(48, SearchBar::hidden), 94);
  EXPECT_EQ(panelHeight(48, SearchBar::shown), 107);
  EXPECT_EQ(panelHeight(440, SearchBar::hidden), 460);
  EXPECT_EQ(panelHeight(409, SearchBar::shown), 468);
}

TEST(ListGeometry, RowsFollowEachOtherAPointApart) {
  EXPECT_EQ(rowFrame(0, std::nullopt), (Rect{0, 0, 388, 48}));
  EXPECT_EQ(rowFrame(2, std::nullopt), (Rect{0, 98, 388, 48}));
}

TEST(ListGeometry, TheSeparatorStandsBetweenTheLastPinAndTheNextRow) {
  EXPECT_EQ(rowFrame(2, 3).y, 98);
  EXPECT_EQ(rowFrame(3, 3).y, 159);
  EXPECT_EQ(separatorFrame(3), (Rect{12, 152, 364, 1}));
  EXPECT_GT(separatorFrame(3).y, rowFrame(2, 3).maxY());
  EXPECT_LT(separatorFrame(3).maxY(), rowFrame(3, 3).y);
}

TEST(ListGeometry, TheLastRowLeavesTheRoomBelow) {
  for (const std::size_t count : {1U, 5U, 50U}) {
    const auto boundary = count > 1 ? std::optional<std::size_t>(1) : std::nullopt;
    EXPECT_EQ(rowFrame(count - 1, boundary).maxY() + 18, documentHeight(count, boundary));
  }
}

TEST(ListGeometry, AnotherHeightKeepsWidthAndCentre) {
  const Rect frame{100, 200, 408, 360};
  const Rect result = resized(frame, 133);
  EXPECT_EQ(result, (Rect{100, 313.5, 408, 133}));
  EXPECT_EQ(resized(result, 360), frame);
}

TEST(ListGeometry, AHeightWithinAPointLeavesTheFrameAlone) {
  const Rect frame{100, 200, 408, 360};
  EXPECT_EQ(resized(frame, 361), frame);
  EXPECT_EQ(resized(frame, 359), frame);
  EXPECT_NE(resized(frame, 361.5), frame);
}

TEST(ListGeometry, ThePanelStandsInTheMiddleOfTheVisibleArea) {
  EXPECT_EQ(centred({0, 0, 408, 360}, {1920, 30, 1280, 770}), (Rect{2356, 235, 408, 360}));
}

TEST(ListGeometry, APanelTooLargeForTheScreenKeepsItsTopLeftCornerOnIt) {
  EXPECT_EQ(centred({0, 0, 408, 468}, {100, 40, 400, 300}), (Rect{100, 40, 408, 468}));
}

TEST(ListGeometry, RevealingScrollsNoFurtherThanNeeded) {
  const Rect row{0, 490, 388, 48};
  EXPECT_EQ(offsetRevealing(row, 0, 440, 1000), 490 + 48 + 4 - 440);
  EXPECT_EQ(offsetRevealing(row, 520, 440, 1000), 486);
  EXPECT_EQ(offsetRevealing(row, 300, 440, 1000), 300);
}

TEST(ListGeometry, RevealingStaysWithinTheDocument) {
  EXPECT_EQ(offsetRevealing({0, 0, 388, 48}, 100, 440, 1000), 0);
  EXPECT_EQ(offsetRevealing({0, 950, 388, 48}, 0, 440, 1000), 560);
  EXPECT_EQ(offsetRevealing({0, 0, 388, 48}, 5, 440, 66), 0);
}

}  // namespace
}  // namespace vantorel
