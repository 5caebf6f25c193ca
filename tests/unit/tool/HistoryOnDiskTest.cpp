// SPDX-License-Identifier: MIT
#include "tool/HistoryOnDisk.h"

#include <gtest/gtest.h>

#include "fakes/FakeImage.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using Texts = std::vector<std::string>;
using State = HistoryOnDisk::State;

Texts textsOf(const std::optional<std::vector<ClipItem>>& items) {
  Texts texts;
  for (const auto& item : items.value()) texts.push_back(item.preview);
  return texts;
}

TEST(HistoryOnDisk, IsReadInTheOrderOfThePanelAndLeftAsItIs) {
  TestStore store;
  const Uuid first = store.addText("a");
  store.addText("b");
  store->togglePinned(first);
  const auto changes = store.files().calls().size();
  const HistoryOnDisk history(store.files(), store.base());
  EXPECT_EQ(history.state(), State::sealed);
  EXPECT_EQ(textsOf(history.read(store.storage(), testDate(10))), (Texts{"a", "b"}));
  EXPECT_EQ(store.files().calls().size(), changes);
}

TEST(HistoryOnDisk, WhatIsTooOldForThePanelIsNotListed) {
  TestStore store;
  store.addText("a");
  const HistoryOnDisk history(store.files(), store.base());
  EXPECT_EQ(textsOf(history.read(store.storage(), testDate(604'802))), Texts{});
}

TEST(HistoryOnDisk, OpensWithItsOwnKeyAlone) {
  TestStore store;
  store.addText("a");
  const HistoryOnDisk history(store.files(), store.base());
  EXPECT_FALSE(history.read(SecureStorage::ephemeral(), testDate()));
  EXPECT_FALSE(history.read(nullptr, testDate()));
}

TEST(HistoryOnDisk, DamageIsNoEmptyHistory) {
  TestStore store;
  store.addText("a");
  store.quit();
  ASSERT_FALSE(store.disk().remove(store.base() / "history.vntl"));
  const HistoryOnDisk history(store.files(), store.base());
  EXPECT_EQ(history.state(), State::absent);
  ASSERT_FALSE(store.disk().writeNewFile(store.base() / "history.vntl", bytesOf("VNTL1..."), 0600));
  EXPECT_EQ(history.state(), State::sealed);
  EXPECT_FALSE(history.read(store.storage(), testDate()));
}

TEST(HistoryOnDisk, KnowsThatOfAnOldVersion) {
  TestStore store;
  store.quit();
  (void)store.disk().remove(store.base() / "history.vntl");
  ASSERT_FALSE(store.disk().writeNewFile(store.base() / "history.json", bytesOf("[]"), 0600));
  EXPECT_EQ(HistoryOnDisk(store.files(), store.base()).state(), State::old);
}

TEST(HistoryOnDisk, HasThePicturesOfItsEntries) {
  TestStore store;
  store->captureImage(FakeImage({4, 3}, "pixels"), {});
  const HistoryOnDisk history(store.files(), store.base());
  const ClipItem item = store->items().front();
  const auto picture = history.picture(*store.storage(), item);
  ASSERT_TRUE(picture);
  EXPECT_EQ(*picture, store->assetData(item));
  EXPECT_FALSE(history.picture(*SecureStorage::ephemeral(), item));
}

TEST(HistoryOnDisk, AnUnsealedPictureIsNotSealedByAReader) {
  TestStore store;
  store->captureImage(FakeImage({4, 3}, "pixels"), {});
  const ClipItem item = store->items().front();
  const auto file = store.assets() / *item.assetFilename;
  const auto bytes = store->assetData(item);
  ASSERT_FALSE(store.disk().remove(file));
  ASSERT_FALSE(store.disk().writeNewFile(file, *bytes, 0600));
  const HistoryOnDisk history(store.files(), store.base());
  EXPECT_EQ(history.picture(*store.storage(), item), bytes);
  EXPECT_EQ(store.disk().readFile(file, 1000), bytes);
}

}  // namespace
}  // namespace vantorel
