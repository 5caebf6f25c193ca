// SPDX-License-Identifier: MIT
#include "store/ClipRetention.h"

#include <gtest/gtest.h>

#include <limits>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

constexpr Seconds week{604'800};

std::vector<std::string> texts(const std::vector<ClipItem>& items) {
  std::vector<std::string> texts;
  for (const ClipItem& item : items) texts.push_back(item.text->get());
  return texts;
}

TEST(Pruned, KeepsThePinsAndTheNewestOfTheOthers) {
  std::vector<ClipItem> items;
  for (int i = 0; i < 60; ++i) items.push_back(textItem(std::to_string(i), testDate(-i)));
  for (int i = 4; i >= 0; --i) {
    items.push_back(pinnedItem(textItem("pin" + std::to_string(i), testDate(-9000)), i));
  }
  const Retention result = pruned(items, testDate(), week, 50);
  ASSERT_EQ(result.kept.size(), 50U);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(result.kept[i].text->get(), "pin" + std::to_string(i));
  }
  for (std::size_t i = 0; i < 45; ++i) {
    EXPECT_EQ(result.kept[5 + i].text->get(), std::to_string(i));
  }
  EXPECT_EQ(result.dropped.size(), 15U);
}

TEST(Pruned, AnEntryOfExactlyTheAgeStays) {
  const auto result = pruned({textItem("at", testDate(-604'800)),
                              textItem("past", advanced(testDate(-604'800), Seconds(-0.001)))},
                             testDate(), week, 50);
  EXPECT_EQ(texts(result.kept), std::vector<std::string>{"at"});
  EXPECT_EQ(texts(result.dropped), std::vector<std::string>{"past"});
}

TEST(Pruned, TheLastCopyDecidesTheAge) {
  ClipItem item = textItem("a", testDate(-700'000));
  item.lastCopiedAt = testDate(-10);
  EXPECT_EQ(pruned({item}, testDate(), week, 50).kept.size(), 1U);
}

TEST(Pruned, PinsStayAtAnyAgeAndInAnyNumber) {
  std::vector<ClipItem> items = {textItem("fresh")};
  for (int i = 0; i < 7; ++i) {
    items.push_back(pinnedItem(textItem(std::to_string(i), testDate(-31'536'000)), i));
  }
  const auto result = pruned(items, testDate(), week, 5);
  EXPECT_EQ(result.kept.size(), 7U);
  EXPECT_EQ(texts(result.dropped), std::vector<std::string>{"fresh"});
}

TEST(Pruned, EntriesFromTheFutureStay) {
  EXPECT_EQ(pruned({textItem("a", testDate(1e6))}, testDate(), week, 50).kept.size(), 1U);
}

TEST(Pruned, AnAgeWithoutBoundKeepsEverything) {
  for (const double age : {1e18, 1e300, std::numeric_limits<double>::infinity()}) {
    const auto result = pruned({textItem("a", testDate(-6e10))}, testDate(), Seconds(age), 50);
    EXPECT_EQ(result.kept.size(), 1U) << age;
  }
}

TEST(Pruned, AnAgeOfCenturiesIsCountedToo) {
  constexpr double century = 3'155'760'000;
  const auto result =
      pruned({textItem("young", testDate(-century)), textItem("old", testDate(-3 * century))},
             testDate(), Seconds(2 * century), 50);
  EXPECT_EQ(texts(result.kept), std::vector<std::string>{"young"});
}

TEST(Pruned, AnAgeThatReachesBeforeTheBeginningOfTimeKeepsEverything) {
  const Date now(Date::duration::min() / 4);
  EXPECT_EQ(pruned({textItem("a", now)}, now, Seconds(9e12), 50).kept.size(), 1U);
}

TEST(Pruned, NothingFitsIntoAHistoryOfNone) {
  EXPECT_TRUE(pruned({textItem("a")}, testDate(), week, 0).kept.empty());
}

constexpr std::uint64_t mebibyte = 1'048'576;

std::uint64_t tenMebibytes(const std::string& /*name*/) { return 10 * mebibyte; }

std::string names(const std::vector<ClipItem>& items) {
  std::string names;
  for (const ClipItem& item : items) names += item.assetFilename.value_or("-");
  return names;
}

TEST(AssetBudget, DropsTheOldestUntilTheRestFits) {
  std::vector<ClipItem> items;
  for (int i = 0; i < 16; ++i) {
    items.push_back(imageItem(std::string(1, static_cast<char>('a' + i)), std::to_string(i)));
    if (i == 12) items.push_back(textItem("text"));
  }
  const auto result = withinAssetBudget(items, 160 * mebibyte, 150 * mebibyte, tenMebibytes);
  EXPECT_EQ(names(result.kept), "abcdefghijklm-no");
  EXPECT_EQ(names(result.dropped), "p");
  const auto less = withinAssetBudget(items, 160 * mebibyte, 121 * mebibyte, tenMebibytes);
  EXPECT_EQ(names(less.kept), "abcdefghijkl-");
}

TEST(AssetBudget, ExactlyTheBudgetFits) {
  const std::vector<ClipItem> items = {imageItem("a", "1"), imageItem("b", "2")};
  EXPECT_EQ(withinAssetBudget(items, 20 * mebibyte, 20 * mebibyte, tenMebibytes).kept, items);
  EXPECT_EQ(names(withinAssetBudget(items, 20 * mebibyte + 1, 20 * mebibyte, tenMebibytes).kept),
            "a");
}

TEST(AssetBudget, PinsAndOtherKindsStayAndPinnedFilesCount) {
  ClipItem named = textItem("a text that names a file");
  named.assetFilename = "t";
  const std::vector<ClipItem> items = {pinnedItem(imageItem("p", "1"), 0), imageItem("a", "2"),
                                       named, imageItem("b", "3"), filesItem({"/f"})};
  const auto result = withinAssetBudget(items, 40 * mebibyte, 5 * mebibyte, tenMebibytes);
  EXPECT_EQ(names(result.kept), "pt-");
  EXPECT_EQ(names(result.dropped), "ba");
}

TEST(AssetBudget, AnImageWithoutAFileStays) {
  ClipItem fileless = imageItem("x", "1");
  fileless.assetFilename.reset();
  EXPECT_EQ(withinAssetBudget({fileless}, 100, 1, tenMebibytes).kept.size(), 1U);
}

TEST(AssetBudget, AFileOfUnknownSizeFreesNothing) {
  const std::vector<ClipItem> items = {imageItem("a", "1"), imageItem("b", "2"),
                                       imageItem("c", "3")};
  const auto result = withinAssetBudget(
      items, 20, 15, [](const std::string& name) { return name == "c" ? 0 : std::uint64_t{10}; });
  EXPECT_EQ(names(result.kept), "a");
}

TEST(AssetBudget, ASizeBeyondTheTotalLeavesNothingToFree) {
  const std::vector<ClipItem> items = {imageItem("a", "1"), imageItem("b", "2")};
  EXPECT_EQ(names(withinAssetBudget(items, 20, 15, tenMebibytes).kept), "a");
}

TEST(AssetBudget, AFileThatTwoEntriesNameIsNoGain) {
  const std::vector<ClipItem> items = {pinnedItem(imageItem("a", "1"), 0), imageItem("a", "2"),
                                       imageItem("b", "3")};
  EXPECT_EQ(names(withinAssetBudget(items, 20 * mebibyte, mebibyte, tenMebibytes).kept), "aa");
}

}  // namespace
}  // namespace vantorel
