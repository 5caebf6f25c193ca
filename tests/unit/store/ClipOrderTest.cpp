// SPDX-License-Identifier: MIT
#include "store/ClipOrder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

ClipItem pin(std::string_view text, std::optional<std::int64_t> order, double seconds = 0) {
  ClipItem item = textItem(text, testDate(seconds));
  item.isPinned = true;
  item.pinOrder = order;
  return item;
}

ClipItem plain(std::string_view text, double seconds) { return textItem(text, testDate(seconds)); }

void expectBefore(const ClipItem& a, const ClipItem& b) {
  EXPECT_TRUE(itemSort(a, b));
  EXPECT_FALSE(itemSort(b, a));
}

TEST(ItemSort, PinsComeFirst) { expectBefore(pin("a", 4, -1000), plain("b", 0)); }

TEST(ItemSort, AnAbsentPinStateIsNotPinned) {
  ClipItem absent = plain("a", 5);
  absent.isPinned.reset();
  expectBefore(absent, plain("b", 0));
  expectBefore(pin("c", std::nullopt, -10), absent);
}

TEST(ItemSort, PinsStandByTheirNumbers) {
  expectBefore(pin("a", 0, 0), pin("b", 1, 10));
  expectBefore(pin("a", -5, 0), pin("b", 0, 10));
  expectBefore(pin("a", 1'000'000, 0), pin("b", std::nullopt, 10));
}

TEST(ItemSort, PinsOfTheSameNumberStandByRecency) {
  expectBefore(pin("a", 3, 10), pin("b", 3, 0));
  expectBefore(pin("a", std::nullopt, 10), pin("b", std::nullopt, 0));
  expectBefore(pin("a", std::nullopt, 10), pin("b", std::numeric_limits<std::int64_t>::max(), 0));
}

TEST(ItemSort, OthersStandByRecencyWhateverTheirNumber) {
  ClipItem numbered = plain("a", 0);
  numbered.pinOrder = 0;
  expectBefore(plain("b", 1), numbered);
}

TEST(ItemSort, TheLastCopyCounts) {
  ClipItem copied = plain("a", -100);
  copied.lastCopiedAt = testDate(5);
  expectBefore(copied, plain("b", 0));
  copied.lastCopiedAt = testDate(-200);
  expectBefore(plain("b", -150), copied);
}

TEST(ItemSort, EqualEntriesAreInNoOrder) {
  EXPECT_FALSE(itemSort(plain("a", 0), plain("b", 0)));
  EXPECT_FALSE(itemSort(plain("b", 0), plain("a", 0)));
  EXPECT_FALSE(itemSort(pin("a", 1), pin("b", 1)));
}

TEST(NumberPins, NumbersThemAsTheyStandAndNothingElse) {
  std::vector<ClipItem> items = {pin("a", 7), plain("b", 0), pin("c", std::nullopt), pin("d", 7)};
  items[1].pinOrder = 9;
  numberPins(items);
  EXPECT_EQ(items[0].pinOrder, 0);
  EXPECT_EQ(items[1].pinOrder, 9);
  EXPECT_EQ(items[2].pinOrder, 1);
  EXPECT_EQ(items[3].pinOrder, 2);
}

TEST(MovedPin, LeavesTheOthersBehindThePinsAsTheyStood) {
  const std::vector<ClipItem> items = {plain("x", 0), pin("a", 0), plain("y", 9), pin("b", 1)};
  const auto moved = withMovedPin(items, items[3].id, items[1].id, true);
  ASSERT_TRUE(moved);
  std::string order;
  for (const ClipItem& item : *moved) order += item.text->get();
  EXPECT_EQ(order, "baxy");
}

}  // namespace
}  // namespace vantorel
