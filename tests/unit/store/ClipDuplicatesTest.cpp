// SPDX-License-Identifier: MIT
#include "store/ClipDuplicates.h"

#include <gtest/gtest.h>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

ClipItem hashless() {
  ClipItem item = imageItem("a.png", "h");
  item.contentHash.reset();
  return item;
}

TEST(Duplicates, TextsByTheirTextAlone) {
  ClipItem other = textItem("a", testDate(9));
  other.rtfData = toBytes("rtf");
  other.sourceAppName = "Other";
  other.contentHash = "other";
  EXPECT_TRUE(duplicates(textItem("a"), other));
  EXPECT_FALSE(duplicates(textItem("a"), textItem("A")));
  EXPECT_FALSE(duplicates(textItem("a"), textItem("a ")));
}

TEST(Duplicates, AbsentTextsEqualEachOtherAndNothingElse) {
  ClipItem absent = textItem("");
  absent.text.reset();
  EXPECT_TRUE(duplicates(absent, absent));
  EXPECT_FALSE(duplicates(absent, textItem("")));
  EXPECT_FALSE(duplicates(textItem(""), absent));
}

TEST(Duplicates, ImagesByTheirHash) {
  EXPECT_TRUE(duplicates(imageItem("a.png", "h"), imageItem("b.jpg", "h")));
  EXPECT_FALSE(duplicates(imageItem("a.png", "h"), imageItem("a.png", "g")));
  EXPECT_FALSE(duplicates(hashless(), hashless()));
  EXPECT_FALSE(duplicates(hashless(), imageItem("a.png", "h")));
}

TEST(Duplicates, FilesByTheirPathsInOrder) {
  EXPECT_TRUE(duplicates(filesItem({"/a", "/b"}), filesItem({"/a", "/b"})));
  EXPECT_FALSE(duplicates(filesItem({"/a", "/b"}), filesItem({"/b", "/a"})));
  EXPECT_FALSE(duplicates(filesItem({"/a"}), filesItem({"/a", "/b"})));
}

TEST(Duplicates, NeverOfAnotherKind) {
  ClipItem image = imageItem("a.png", "h");
  ClipItem files = filesItem({"/a"});
  files.contentHash = "h";
  EXPECT_FALSE(duplicates(image, files));
  files.kind = ClipKind::text;
  ClipItem text = textItem("");
  text.text.reset();
  EXPECT_FALSE(duplicates(text, filesItem({"/a"})));
}

TEST(PreservingPin, WithoutAMatchIsTheEntryItself) {
  const ClipItem item = textItem("a");
  EXPECT_EQ(preservingPin({}, item), item);
}

TEST(PreservingPin, TakesIdentityAndPinOfTheOldAndContentsOfTheNew) {
  ClipItem old = pinnedItem(textItem("a", testDate(-10)), 3);
  old.customName = "name";
  old.lastCopiedAt = testDate(-5);
  old.recognizedText = "words";
  ClipItem item = textItem("a", testDate(0));
  item.title = "New";
  item.preview = "new preview";
  item.sourceAppName = "New App";
  item.sourceBundleIdentifier = "new.app";
  item.rtfData = toBytes("rtf");
  item.htmlData = toBytes("html");
  item.assetFilename = "new.png";
  const ClipItem merged = preservingPin({old}, item);
  ClipItem expected = item;
  expected.id = old.id;
  expected.createdAt = testDate(-10);
  expected.isPinned = true;
  expected.customName = "name";
  expected.pinOrder = 3;
  expected.lastCopiedAt = testDate(0);
  expected.recognizedText = "words";
  EXPECT_EQ(merged, expected);
}

TEST(PreservingPin, KeepsTheNewEntrysOwnLastCopyAndRecognizedText) {
  ClipItem old = imageItem("a.png", "h", testDate(-10));
  old.recognizedText = "old";
  ClipItem item = imageItem("b.png", "h", testDate(0));
  item.lastCopiedAt = testDate(7);
  item.recognizedText = "";
  const ClipItem merged = preservingPin({old}, item);
  EXPECT_EQ(merged.lastCopiedAt, testDate(7));
  EXPECT_EQ(merged.recognizedText, "");
}

TEST(PreservingPin, MakesAnAbsentPinStateFalse) {
  ClipItem old = textItem("a");
  old.isPinned.reset();
  EXPECT_EQ(preservingPin({old}, textItem("a")).isPinned, false);
}

TEST(PreservingPin, PrefersThePinThatIsListedFirst) {
  const ClipItem plain = textItem("a", testDate(100));
  const ClipItem second = pinnedItem(textItem("a", testDate(50)), 2);
  const ClipItem first = pinnedItem(textItem("a", testDate(10)), 1);
  const ClipItem unnumbered = pinnedItem(textItem("a", testDate(90)), 0);
  ClipItem last = unnumbered;
  last.pinOrder.reset();
  EXPECT_EQ(preservingPin({plain, second, last, first}, textItem("a")).id, first.id);
  EXPECT_EQ(preservingPin({first, last, second}, textItem("a")).id, first.id);
}

TEST(PreservingPin, WithoutAPinTakesTheFirstMatch) {
  const ClipItem a = textItem("a", testDate(1));
  const ClipItem b = textItem("a", testDate(2));
  EXPECT_EQ(preservingPin({a, b}, textItem("a")).id, a.id);
}

TEST(Inserted, IsNoNewsOnlyWhenItRepeatsTheEntryCopiedLast) {
  ClipItem a = textItem("a", testDate(0));
  const ClipItem b = textItem("b", testDate(5));
  EXPECT_TRUE(inserted({}, a).isNews);
  EXPECT_TRUE(inserted({b, a}, textItem("a", testDate(9))).isNews);
  EXPECT_FALSE(inserted({b, a}, textItem("b", testDate(9))).isNews);
  a.lastCopiedAt = testDate(7);
  EXPECT_FALSE(inserted({b, a}, textItem("a", testDate(9))).isNews);
}

TEST(Inserted, OfSeveralCopiedLastTheFirstCounts) {
  const ClipItem a = textItem("a", testDate(5));
  const ClipItem b = textItem("b", testDate(5));
  EXPECT_FALSE(inserted({a, b}, textItem("a", testDate(9))).isNews);
  EXPECT_TRUE(inserted({a, b}, textItem("b", testDate(9))).isNews);
}

TEST(Inserted, AnOldPinCountsAsCopiedLastToo) {
  const ClipItem pin = pinnedItem(textItem("pin", testDate(9)), 0);
  const ClipItem a = textItem("a", testDate(5));
  EXPECT_FALSE(inserted({pin, a}, textItem("pin", testDate(10))).isNews);
  EXPECT_TRUE(inserted({pin, a}, textItem("a", testDate(10))).isNews);
}

TEST(Inserted, RemovesEveryDuplicate) {
  const ClipItem one = textItem("a", testDate(1));
  const ClipItem other = textItem("b", testDate(2));
  const ClipItem two = pinnedItem(textItem("a", testDate(3)), 0);
  const auto result = inserted({one, other, two}, textItem("a", testDate(9)));
  ASSERT_EQ(result.items.size(), 2U);
  EXPECT_EQ(result.items[0].id, two.id);
  EXPECT_EQ(result.items[1], other);
}

TEST(Coalesced, KeepsOneEntryForEveryContentNewestFirst) {
  const ClipItem a = textItem("a", testDate(1));
  const ClipItem b = textItem("b", testDate(2));
  const ClipItem a2 = textItem("a", testDate(3));
  const auto result = coalesced({a, b, a2});
  ASSERT_EQ(result.size(), 2U);
  EXPECT_EQ(result[0].id, a2.id);
  EXPECT_EQ(result[0].createdAt, testDate(3));
  EXPECT_EQ(result[0].lastCopiedAt, testDate(3));
  EXPECT_EQ(result[1].id, b.id);
}

TEST(Coalesced, OfTwoPinsTheFirstInTheHistorysOrderStays) {
  ClipItem second = pinnedItem(textItem("a", testDate(9)), 4);
  second.customName = "second";
  ClipItem first = pinnedItem(textItem("a", testDate(1)), 2);
  first.customName = "first";
  const auto result = coalesced({second, first});
  ASSERT_EQ(result.size(), 1U);
  EXPECT_EQ(result[0].id, first.id);
  EXPECT_EQ(result[0].customName, "first");
  EXPECT_EQ(result[0].pinOrder, 2);
  EXPECT_EQ(result[0].lastCopiedAt, testDate(9));
}

TEST(Coalesced, NeverMergesImagesWithoutAHash) {
  EXPECT_EQ(coalesced({hashless(), hashless()}).size(), 2U);
}

TEST(Coalesced, EntriesOfTheSameMomentStayInTheirOrder) {
  const ClipItem a = textItem("a");
  const ClipItem b = textItem("b");
  const ClipItem c = textItem("c");
  const auto result = coalesced({b, a, c});
  EXPECT_EQ(result[0].id, b.id);
  EXPECT_EQ(result[1].id, a.id);
  EXPECT_EQ(result[2].id, c.id);
}

TEST(Coalesced, ManageALongHistoryWithinTheTestsTime) {
  std::vector<ClipItem> items;
  const ClipItem model = textItem("");
  for (int i = 0; i < 20'000; ++i) {
    items.push_back(model);
    items.back().text = std::to_string(i % 12'000);
  }
  EXPECT_EQ(coalesced(std::move(items)).size(), 12'000U);
}

TEST(SeparateIdentities, ChangesOnlyLaterOnes) {
  const ClipItem a = textItem("a");
  ClipItem b = textItem("b");
  b.id = a.id;
  std::vector<ClipItem> items = {a, b, textItem("c"), b};
  const Uuid c = items[2].id;
  separateIdentities(items);
  EXPECT_EQ(items[0].id, a.id);
  EXPECT_NE(items[1].id, a.id);
  EXPECT_EQ(items[2].id, c);
  EXPECT_NE(items[3].id, a.id);
  EXPECT_NE(items[3].id, items[1].id);
}

}  // namespace
}  // namespace vantorel
