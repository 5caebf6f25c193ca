// SPDX-License-Identifier: MIT
#include "store/HistorySize.h"

#include <gmock/gmock.h>

#include "fakes/TestStore.h"
#include "store/HistoryFile.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using Texts = std::vector<std::string>;

ClipItem richItem(std::string_view text, std::size_t richBytes) {
  ClipItem item = textItem(text);
  item.rtfData = Bytes(richBytes / 2);
  item.htmlData = Bytes(richBytes / 2);
  return item;
}

/// What is left: a star stands for the rich forms.
Texts left(const std::vector<ClipItem>& items, std::uint64_t maximumBytes) {
  const auto kept = withinHistorySize(items, maximumBytes);
  if (!kept) return {"nothing"};
  Texts texts;
  for (const ClipItem& item : *kept) {
    texts.push_back(item.preview + (item.rtfData && item.htmlData ? "*" : ""));
  }
  return texts;
}

TEST(HistorySize, IsNeverLessThanWhatIsWrittenAndHardlyMore) {
  std::string everything;
  for (int code = 0; code < 128; ++code) everything += static_cast<char>(code);
  everything += "עברית";
  for (const std::string& text :
       {std::string(), std::string("a"), everything, std::string(5'000, '\n'),
        std::string(5'000, '\x01'), std::string(5'000, '"'), std::string(4'999, 'a')}) {
    ClipItem item = richItem(text, 2'000);
    item.title = item.preview = text;
    item.sourceAppName = item.sourceBundleIdentifier = item.customName = text;
    item.recognizedText = item.assetFilename = text;
    item.filePaths = {text, text, ""};
    item.pinOrder = std::numeric_limits<std::int64_t>::min();
    item.lastCopiedAt = testDate();
    for (const auto& items :
         {std::vector<ClipItem>{}, std::vector{item}, std::vector{item, item, item}}) {
      const auto written = encodeHistory(items).size();
      EXPECT_GE(historySize(items), written);
      EXPECT_LE(historySize(items), written + 1'024 * items.size() + 16);
    }
  }
}

TEST(WithinHistorySize, LeavesAListThatFitsAsItIs) {
  const std::vector<ClipItem> items = {richItem("a", 9'000), textItem("b")};
  EXPECT_EQ(withinHistorySize(items, historySize(items)), items);
}

TEST(WithinHistorySize, TakesTheOldestRichFormsFirst) {
  const std::vector<ClipItem> items = {richItem("new", 9'000), richItem("old", 9'000),
                                       textItem("oldest")};
  EXPECT_EQ(left(items, historySize(items) - 1), (Texts{"new*", "old", "oldest"}));
  EXPECT_EQ(left(items, historySize(items) - 12'001), (Texts{"new", "old", "oldest"}));
}

TEST(WithinHistorySize, TakesThenTheOldestEntriesThatAreNotPinned) {
  const std::vector<ClipItem> items = {pinnedItem(richItem("pin", 9'000), 0),
                                       textItem(std::string(3'000, 'x')), textItem("b"),
                                       richItem("c", 9'000)};
  const auto plain = historySize(items) - 24'000;
  EXPECT_EQ(left(items, plain), (Texts{"pin", std::string(3'000, 'x'), "b", "c"}));
  EXPECT_EQ(left(items, plain - 1), (Texts{"pin", std::string(3'000, 'x'), "b"}));
  EXPECT_EQ(left(items, plain - 4'000), (Texts{"pin"}));
}

TEST(WithinHistorySize, IsAbsentWhenThePinsAloneAreTooLarge) {
  const std::vector<ClipItem> items = {pinnedItem(textItem(std::string(3'000, 'x')), 0),
                                       textItem("b")};
  EXPECT_EQ(left(items, 3'000), Texts{"nothing"});
}

}  // namespace
}  // namespace vantorel
