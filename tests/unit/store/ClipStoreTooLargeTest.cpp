// SPDX-License-Identifier: MIT
// A list of more JSON than a history may have.
#include <gmock/gmock.h>

#include <algorithm>

#include "fakes/FakeImage.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using Operation = FaultyFileSystem::Operation;
using Texts = std::vector<std::string>;

class AListThatIsTooLarge : public testing::Test {
 protected:
  static ClipStoreLimits limits(std::size_t maxItems) {
    ClipStoreLimits limits;
    limits.maxItems = maxItems;
    limits.maxHistoryBytes = 20'000;
    return limits;
  }
  // A text of a test stands in its preview once more.
  /// Ends with two pins that are too much together, and a picture that the disk names.
  void makeImpossible() {
    store_->captureImage(FakeImage({1, 1}, "picture"), {});
    for (const char letter : {'x', 'y'}) {
      store_->insert(pinnedItem(textItem(std::string(7'500, letter), store_.dispatch().now()), 9));
    }
  }
  [[nodiscard]] long writes() {
    const auto& calls = store_.files().calls();
    return std::count_if(calls.begin(), calls.end(), [](const FaultyFileSystem::Call& call) {
      return call.operation == Operation::writeNewFile;
    });
  }
  [[nodiscard]] Texts saved() {
    Texts texts;
    const auto items = store_.savedItems().value();
    for (const ClipItem& item : items) texts.push_back(item.preview);
    return texts;
  }

  TestStore store_{limits(3)};
};

TEST_F(AListThatIsTooLarge, IsSavedWithoutItsOldestRichForms) {
  for (const char* text : {"old", "new"}) {
    ClipItem item = textItem(text, store_.dispatch().now());
    item.htmlData = Bytes(9'000);
    store_->insert(item);
    store_.tick();
  }
  const auto items = store_.savedItems().value();
  ASSERT_EQ(items.size(), 2U);
  EXPECT_TRUE(items[0].htmlData);
  EXPECT_FALSE(items[1].htmlData);
  EXPECT_TRUE(store_->items()[1].htmlData);  // it can still be pasted as it was copied
  EXPECT_EQ(store_.dispatch().timerCount(), 0U);
}

TEST_F(AListThatIsTooLarge, IsSavedWithoutItsOldestEntries) {
  const std::string a(7'500, 'a');
  const std::string b(7'500, 'b');
  store_.addText(a);
  store_.addText(b);
  EXPECT_EQ(saved(), Texts{b});
  EXPECT_EQ(store_.texts(), (Texts{b, a}));
  EXPECT_EQ(store_.dispatch().timerCount(), 0U);
}

TEST_F(AListThatIsTooLarge, IsNotTriedAgainUntilItChanges) {
  makeImpossible();
  EXPECT_EQ(store_->lastSave(), SealedHistory::Outcome::tooLarge);
  const auto before = writes();
  EXPECT_EQ(store_.dispatch().timerCount(), 0U);
  store_.dispatch().advance(Seconds(3'600));
  EXPECT_EQ(writes(), before);
  store_->remove(store_->items()[1].id);
  EXPECT_EQ(writes(), before + 1);
  EXPECT_EQ(store_.savedItems()->size(), 2U);
}

TEST_F(AListThatIsTooLarge, MakesARetryNeedless) {
  store_.files().fail(Operation::writeNewFile, std::errc::no_space_on_device);
  store_.addText("a");
  store_.files().recover();
  ASSERT_EQ(store_.dispatch().timerCount(), 1U);
  makeImpossible();
  EXPECT_EQ(store_.dispatch().timerCount(), 0U);
}

TEST_F(AListThatIsTooLarge, DeletesNoPictureThatTheDiskStillNames) {
  makeImpossible();
  ASSERT_EQ(store_.assetNames().size(), 1U);
  store_.addText("a");
  ASSERT_EQ(store_.texts().back(), "a");
  EXPECT_EQ(store_.assetNames().size(), 1U);
  store_.quit();
  EXPECT_EQ(store_.assetNames().size(), 1U);
}

TEST_F(AListThatIsTooLarge, KeepsThePicturesOfEntriesThatOnlyTheMemoryHas) {
  store_->captureImage(FakeImage({1, 1}, "picture"), {});
  store_.addText(std::string(9'200, 'a'));
  EXPECT_EQ(saved(), Texts{std::string(9'200, 'a')});
  EXPECT_EQ(store_.assetNames().size(), 1U);
  EXPECT_TRUE(store_->assetData(store_->items()[1]));
}

}  // namespace
}  // namespace vantorel
