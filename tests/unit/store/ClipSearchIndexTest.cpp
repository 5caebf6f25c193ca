// SPDX-License-Identifier: MIT
#include "store/ClipSearchIndex.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <random>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// Their allocator's own count; not every compiler comes with a header for it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();  // NOLINT(bugprone-*)
#endif

namespace vantorel {
namespace {

ClipItem textItem(const std::string& text) {
  ClipItem item;
  item.id = Uuid::random();
  item.title = "Text";
  item.text = SharedText(text);
  return item;
}

std::vector<Uuid> ids(const std::vector<ClipItem>& items) {
  std::vector<Uuid> found;
  found.reserve(items.size());
  for (const auto& item : items) found.push_back(item.id);
  return found;
}

std::vector<Uuid> found(ClipSearchIndex& index, const std::vector<ClipItem>& items,
                        const std::string& query) {
  return ids(index.matching(items, {.query = query}));
}

TEST(SearchIndex, KeepsTheOrderOfTheList) {
  ClipSearchIndex index;
  const std::vector items = {textItem("b one"), textItem("two"), textItem("a one")};
  EXPECT_EQ(found(index, items, "ONE"), (std::vector{items[0].id, items[2].id}));
  EXPECT_EQ(found(index, items, ""), ids(items));
  EXPECT_TRUE(found(index, items, "three").empty());
  EXPECT_TRUE(found(index, {}, "one").empty());
}

TEST(SearchIndex, HonoursTypeAndSource) {
  ClipSearchIndex index;
  auto image = textItem("one");
  image.kind = ClipKind::image;
  image.sourceAppName = "Viewer";
  const std::vector items = {textItem("one"), image};
  EXPECT_EQ(ids(index.matching(items, {.query = "one", .type = ClipTypeFilter::image})),
            std::vector{image.id});
  EXPECT_EQ(ids(index.matching(items, {.query = "one", .sourceId = "Viewer"})),
            std::vector{image.id});
}

TEST(SearchIndex, FindsAnEntryAgainWhenTheQueryIsShortened) {
  ClipSearchIndex index;
  const std::vector items = {textItem("invoice"), textItem("invert"), textItem("other")};
  EXPECT_EQ(found(index, items, "inv").size(), 2U);
  EXPECT_EQ(found(index, items, "invo").size(), 1U);
  EXPECT_EQ(found(index, items, "inv").size(), 2U);
  EXPECT_EQ(found(index, items, "o").size(), 2U);
  EXPECT_EQ(found(index, items, "").size(), 3U);
}

TEST(SearchIndex, FindsALetterWithAMarkAfterTheLetterAloneWasNotFound) {
  ClipSearchIndex index;
  auto item = textItem("x\u0302");
  item.title = "";  // "Text" has an x of its own
  EXPECT_TRUE(found(index, {item}, "x").empty());
  EXPECT_EQ(found(index, {item}, "x\u0302").size(), 1U);
}

TEST(SearchIndex, SeesThatAnEntryHasChanged) {
  ClipSearchIndex index;
  std::vector items = {textItem("old")};
  EXPECT_TRUE(found(index, items, "new").empty());
  items[0].text = SharedText("NEW");
  EXPECT_EQ(found(index, items, "new").size(), 1U);
  EXPECT_TRUE(found(index, items, "old").empty());
  items[0].recognizedText = "read";
  EXPECT_EQ(found(index, items, "read").size(), 1U);
  items[0].customName = "named";
  EXPECT_EQ(found(index, items, "named").size(), 1U);
  items[0].text = std::nullopt;
  EXPECT_TRUE(found(index, items, "new").empty());
}

TEST(SearchIndex, SeesAChangeWhileTheQueryStaysOrGrows) {
  ClipSearchIndex index;
  std::vector items = {textItem("one")};
  EXPECT_TRUE(found(index, items, "two").empty());
  items[0].customName = "twofold";
  EXPECT_EQ(found(index, items, "two").size(), 1U);
  items[0].text = SharedText("TWOFOLD twice");
  EXPECT_EQ(found(index, items, "twofold twice").size(), 1U);
}

TEST(SearchIndex, ReachesFromTheTextIntoTheDetails) {
  ClipSearchIndex index;
  for (const std::string text : {"the end", "THE END"}) {
    auto item = textItem(text);
    item.preview = "Begin";
    EXPECT_EQ(found(index, {item}, "end begin text").size(), 1U);
    EXPECT_EQ(found(index, {item}, "the end begin text").size(), 1U);
    EXPECT_TRUE(found(index, {item}, "the the end begin text").empty());
  }
}

TEST(SearchIndex, LetsAMarkAtTheBeginningOfAFieldStandAlone) {
  ClipSearchIndex index;
  auto item = textItem("cafe");
  item.title = "";
  item.preview = "\u0301x";
  EXPECT_EQ(found(index, {item}, "cafe").size(), 1U);
}

TEST(SearchIndex, ForgetsAndBeginsAgain) {
  ClipSearchIndex index;
  const std::vector items = {textItem("One"), textItem("Two")};
  index.prepare(items[0]);
  EXPECT_EQ(found(index, {items[1]}, "one").size(), 0U);
  EXPECT_EQ(found(index, items, "one").size(), 1U);
  index.clear();
  EXPECT_EQ(found(index, items, "one").size(), 1U);
}

/// Bytes that the program has allocated: by the allocator that is linked, or by the sanitizer's.
std::size_t allocatedBytes() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return __sanitizer_get_current_allocated_bytes();
#else
  const auto heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
#endif
}

TEST(SearchIndex, LetsGoOfTheTextsOfEntriesThatAreGone) {
  constexpr std::size_t size = 40'000'000;
  const auto before = allocatedBytes();
  ClipSearchIndex index;
  index.prepare(textItem(std::string(size, 'a')));
  ASSERT_GE(allocatedBytes(), before + size);
  EXPECT_TRUE(found(index, {}, "").empty());
  EXPECT_LT(allocatedBytes(), before + size);
}

TEST(SearchIndex, AnswersAsTheFilterDoesWhateverIsTyped) {
  std::mt19937 random(42);
  const std::vector<std::string> letters = {"a", "A", "b", " ", "é", "e\u0301", "x", "\u0302", "ש"};
  const auto phrase = [&](std::size_t longest) {
    std::string made;
    for (auto count = random() % (longest + 1); count > 0; --count) {
      made += letters[random() % letters.size()];
    }
    return made;
  };
  ClipSearchIndex index;
  std::vector<ClipItem> items;
  std::string query;
  for (int step = 0; step < 3000; ++step) {
    switch (random() % 6) {
      case 0:
        items.insert(items.begin(), textItem(phrase(12)));
        if (items.size() > 8) items.pop_back();
        break;
      case 1:
        if (!items.empty()) items[random() % items.size()].customName = phrase(6);
        break;
      case 2:
        query = phrase(2);
        break;
      case 3:
        query = query.substr(0, query.size() / 2);
        break;
      default:
        query += letters[random() % letters.size()];
        break;
    }
    const ClipSearchFilter filter{.query = query};
    std::vector<Uuid> expected;
    for (const auto& item : items) {
      if (filter.includes(item)) expected.push_back(item.id);
    }
    ASSERT_EQ(ids(index.matching(items, filter)), expected) << step << ": " << query;
  }
}

}  // namespace
}  // namespace vantorel
