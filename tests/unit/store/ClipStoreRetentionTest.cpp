// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <utility>

#include "fakes/FakeImage.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using Texts = std::vector<std::string>;

/// An image of `size` bytes, 33 more when sealed, that no other `name` equals.
FakeImage image(std::string_view name, std::size_t size) {
  std::string bytes(name);
  bytes.resize(size, '.');
  return {{1, 1}, bytes};
}

class ClipStoreBudget : public ::testing::Test {
 protected:
  static ClipStoreLimits limits() {
    ClipStoreLimits limits;
    limits.maxAssetBytes = 1000;
    return limits;
  }
  Uuid add(std::string_view name, std::size_t size) {
    store.tick();
    store->captureImage(image(name, size), {});
    for (const ClipItem& item : store->items()) {
      if (item.createdAt == store.dispatch().now()) return item.id;
    }
    return {};
  }
  TestStore store{limits()};
};

TEST_F(ClipStoreBudget, TheOldestImagesGoUntilTheRestFits) {
  const Uuid text = store.addText("text");
  const Uuid first = add("first", 267);
  const Uuid second = add("second", 267);
  const Uuid third = add("third", 267);
  EXPECT_TRUE(store.has(first));
  const Uuid fourth = add("fourth", 267);  // 1200 bytes sealed
  EXPECT_FALSE(store.has(first));
  EXPECT_TRUE(store.has(second) && store.has(third) && store.has(fourth) && store.has(text));
  EXPECT_EQ(store.assetNames().size(), 3U);
  add("fifth", 867);
  EXPECT_FALSE(store.has(second) || store.has(third) || store.has(fourth));
  EXPECT_EQ(store.assetNames().size(), 1U);
  EXPECT_EQ(store.savedItems()->size(), 2U);
}

TEST_F(ClipStoreBudget, PinnedImagesStayAndLeaveNoRoomForOthers) {
  const Uuid pin = add("pin", 900);
  store->togglePinned(pin);
  add("second pin", 900);
  EXPECT_EQ(store->items().size(), 1U);
  EXPECT_TRUE(store.has(pin));
  EXPECT_EQ(store.assetNames(), Texts{*store.item(pin).assetFilename});
}

TEST_F(ClipStoreBudget, AFileOfUnknownSizeIsStillDeletedWithItsEntry) {
  const Uuid first = add("first", 300);
  store.files().hideSize(store.assets() / *store.item(first).assetFilename);
  add("second", 600);
  EXPECT_TRUE(store.has(first));
  const Uuid third = add("third", 600);
  EXPECT_FALSE(store.has(first));
  EXPECT_EQ(store.assetNames(), Texts{*store.item(third).assetFilename});
}

TEST_F(ClipStoreBudget, EntriesThatAgeOutMakeRoomFirst) {
  const Uuid old = add("old", 500);
  store.dispatch().setNow(testDate(604'800));
  const Uuid kept = add("kept", 300);
  store.dispatch().setNow(testDate(604'900));
  const Uuid fresh = add("fresh", 500);
  EXPECT_FALSE(store.has(old));
  EXPECT_TRUE(store.has(kept) && store.has(fresh));
}

TEST(ClipStoreRetention, DroppedEntriesTakeTheirImagesAlong) {
  ClipStoreLimits limits;
  limits.maxItems = 2;
  TestStore store(limits);
  store->captureImage(image("one", 10), {});
  store.addText("a");
  EXPECT_EQ(store.assetNames().size(), 1U);
  store.addText("b");
  EXPECT_EQ(store.texts(), (Texts{"b", "a"}));
  EXPECT_TRUE(store.assetNames().empty());
}

TEST(ClipStoreRetention, AppliesAtStart) {
  TestStore store;
  store.addText("old");
  store.dispatch().setNow(testDate(604'800));
  store.addText("new");
  store.dispatch().setNow(testDate(604'802));
  store.restart();
  EXPECT_EQ(store.texts(), Texts{"new"});
  EXPECT_EQ(store.savedItems()->size(), 1U);
}

TEST(ClipStoreRetention, AFileThatCannotBeDeletedIsDeletedLater) {
  ClipStoreLimits limits;
  limits.maxItems = 1;
  TestStore store(limits);
  store->captureImage(image("one", 10), {});
  store.files().fail(FaultyFileSystem::Operation::remove, std::errc::permission_denied);
  store.addText("a");
  EXPECT_EQ(store.texts(), Texts{"a"});
  EXPECT_EQ(store.assetNames().size(), 1U);
  store.files().recover();
  store.addText("b");
  EXPECT_TRUE(store.assetNames().empty());
}

TEST(ClipStoreRetention, OfStrayFilesAmongTheImagesOnlyItsOwnAreDeleted) {
  TestStore store;
  for (const char* name : {"holiday.jpg", "0A1B2C3D-0000-4000-8000-000000000000.png"}) {
    ASSERT_FALSE(store.disk().writeNewFile(store.assets() / name, toBytes("x"), 0600));
  }
  store->captureImage(image("one", 10), {});
  EXPECT_EQ(store.assetNames(), (Texts{*store->items()[0].assetFilename, "holiday.jpg"}));
}

TEST(ClipStoreRetention, DeletesWhatWasDroppedOnlyAfterTheListIsSaved) {
  ClipStoreLimits limits;
  limits.maxItems = 1;
  TestStore store(limits);
  store->captureImage(image("one", 10), {});
  const auto before = store.files().calls().size();
  store.addText("a");
  using Operation = FaultyFileSystem::Operation;
  std::vector<Operation> operations;
  for (auto i = before; i < store.files().calls().size(); ++i) {
    operations.push_back(store.files().calls()[i].operation);
  }
  EXPECT_EQ(operations,
            (std::vector<Operation>{Operation::claim, Operation::writeNewFile, Operation::rename,
                                    Operation::syncDirectory, Operation::remove}));
}

TEST(ClipStoreRetention, DeletesNothingWhileTheHistoryCouldNotBeRead) {
  ClipStoreLimits limits;
  limits.maxItems = 1;
  TestStore store(limits);
  store->captureImage(image("one", 10), {});
  const Texts files = store.assetNames();
  store.restartWithAnotherKey();
  ASSERT_FALSE(store->persistenceIsReady());
  store->insert(imageItem(files.at(0), "of an entry that is about to be dropped"));
  store.addText("a");
  EXPECT_EQ(store.texts(), Texts{"a"});
  EXPECT_EQ(store.assetNames(), files);
}

/// The list on the disk is an older one, which names a picture that the list has dropped since.
class ClipStoreOutage : public ::testing::Test {
 protected:
  ClipStoreOutage() {
    store->captureImage(image("one", 10), {});
    store.files().fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  }
  static ClipStoreLimits limits() {
    ClipStoreLimits limits;
    limits.maxItems = 1;
    return limits;
  }
  void expectDeletedOnceSaved() {
    EXPECT_EQ(store.assetNames().size(), 1U);
    EXPECT_EQ(store.savedItems()->size(), 1U);
    store.files().recover();
    store.dispatch().advance(Seconds(5));
    EXPECT_TRUE(store.assetNames().empty());
  }
  TestStore store{limits()};
};

TEST_F(ClipStoreOutage, APictureThatHadToGoIsDeletedOnceTheListIsSaved) {
  store.addText("a");
  expectDeletedOnceSaved();
}

TEST_F(ClipStoreOutage, APictureThatWasRemovedIsDeletedOnceTheListIsSaved) {
  store->remove(store->items()[0].id);
  expectDeletedOnceSaved();
}

TEST_F(ClipStoreOutage, AClearOfEverythingDeletesAtOnceAndSoFreesTheDisk) {
  EXPECT_TRUE(store->clear(true));
  EXPECT_TRUE(store.assetNames().empty());
  EXPECT_FALSE(store.savedItems());
}

TEST_F(ClipStoreBudget, WhatIsToBeDeletedOnceTheListIsSavedNoLongerCounts) {
  for (const auto& [name, size] : {std::pair("10000000-0000-4000-8000-000000000000.png", 600),
                                   std::pair("20000000-0000-4000-8000-000000000000.png", 300),
                                   std::pair("30000000-0000-4000-8000-000000000000.png", 300)}) {
    const auto bytes = static_cast<std::size_t>(size);
    ASSERT_FALSE(store.disk().writeNewFile(store.assets() / name, Bytes(bytes), 0600));
    if (name[0] == '3') {
      store.files().fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
    }
    store.tick();
    store->insert(imageItem(name, name, store.dispatch().now()));
  }
  ASSERT_EQ(store->items().size(), 2U);
  ASSERT_EQ(store.assetNames().size(), 3U);
  store.addText("a");
  EXPECT_EQ(store->items().size(), 3U);
}

}  // namespace
}  // namespace vantorel
