// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/FakeImage.h"
#include "fakes/TestStore.h"
#include "security/SecureStorageError.h"

namespace vantorel {
namespace {

using Texts = std::vector<std::string>;

TEST(ClipStoreClear, KeepsThePinsAndTheKey) {
  TestStore store;
  const Uuid a = store.addText("a");
  store->captureImage(FakeImage({1, 1}, "pinned picture"), {});
  const Uuid picture = store->items()[0].id;
  store.addText("c");
  store->captureImage(FakeImage({1, 1}, "picture"), {});
  store->togglePinned(picture);
  store->togglePinned(a);
  const int changes = store.changes();
  EXPECT_TRUE(store->clear(false));
  EXPECT_EQ(store.texts(), (Texts{"1 × 1 px", "a"}));
  EXPECT_EQ(store.assetNames(), Texts{*store.item(picture).assetFilename});
  EXPECT_EQ(store.changes(), changes + 1);
  store.restart();
  EXPECT_EQ(store.texts(), (Texts{"1 × 1 px", "a"}));
  EXPECT_EQ(store->assetData(store->items()[0]), toBytes("pinned picture"));
}

TEST(ClipStoreClear, AlsoRemovesALegacyHistoryWhenPinsStay) {
  TestStore store;
  store->togglePinned(store.addText("a"));
  ASSERT_FALSE(store.disk().writeNewFile(store->legacyIndexUrl(), toBytes("[]"), 0600));
  EXPECT_TRUE(store->clear(false));
  EXPECT_FALSE(std::filesystem::exists(store->legacyIndexUrl()));
  EXPECT_EQ(store.texts(), Texts{"a"});
}

TEST(ClipStoreClear, OfEverythingReplacesTheKeyAndWritesAnEmptyHistory) {
  TestStore store;
  store->togglePinned(store.addText("a"));
  store->captureImage(FakeImage({1, 1}, "picture"), {});
  const auto oldHistory = store.disk().readFile(store->indexUrl(), 1 << 20U).value();
  const auto oldPicture =
      store.disk().readFile(store.assets() / store.assetNames().at(0), 1 << 20U).value();
  ASSERT_FALSE(store.disk().writeNewFile(store->legacyIndexUrl(), toBytes("[]"), 0600));
  const int changes = store.changes();
  EXPECT_TRUE(store->clear(true));
  EXPECT_TRUE(store->items().empty());
  EXPECT_EQ(store.changes(), changes + 1);
  EXPECT_TRUE(store.assetNames().empty());
  EXPECT_FALSE(std::filesystem::exists(store->legacyIndexUrl()));
  EXPECT_THROW((void)store.storage()->open(oldHistory), CipherError);
  EXPECT_THROW((void)store.storage()->open(oldPicture), CipherError);
  ASSERT_TRUE(store.savedItems());
  EXPECT_TRUE(store.savedItems()->empty());
  store.restart();
  EXPECT_TRUE(store->persistenceIsReady());
}

TEST(ClipStoreClear, OfUnpinnedEntriesReplacesTheKeyWhenNothingIsLeft) {
  TestStore store;
  store.addText("a");
  const auto oldHistory = store.disk().readFile(store->indexUrl(), 1 << 20U).value();
  EXPECT_TRUE(store->clear(false));
  EXPECT_THROW((void)store.storage()->open(oldHistory), CipherError);
  EXPECT_TRUE(store.savedItems()->empty());
}

TEST(ClipStoreClear, GoesOnWhenTheKeychainDoesNotTakeTheNewKey) {
  TestStore store;
  FakeKeychain keychain;
  const TemporaryDirectory directory;
  AbsentTextRecognition recognition;
  const auto recognitionQueue = store.dispatch().serialQueue("test.recognition");
  const ClipStoreServices services{store.dispatch(), store.disk(), keychain,
                                   directory.path(), recognition,  *recognitionQueue};
  {
    ClipStore clip(services, std::nullopt, nullptr, {});
    clip.insert(textItem("a"));
    keychain.failOnce(FakeKeychain::Operation::update, FakeKeychain::Backend::dataProtection,
                      keychainStatus::userCanceled);
    EXPECT_TRUE(clip.clear(true));
    clip.insert(textItem("b"));
  }
  const ClipStore again(services, std::nullopt, nullptr, {});
  ASSERT_EQ(again.items().size(), 1U);
  EXPECT_EQ(again.items()[0].text->get(), "b");
}

TEST(ClipStoreClear, AHistoryThatDoesNotOpenGoesPinsAndAllAndTheStoreBeginsAnew) {
  for (const bool includingPinned : {false, true}) {
    TestStore store;
    store->togglePinned(store.addText("a"));
    store->captureImage(FakeImage({1, 1}, "picture"), {});
    store.restartWithAnotherKey();
    ASSERT_FALSE(store->persistenceIsReady());
    EXPECT_TRUE(store->clear(includingPinned));
    EXPECT_TRUE(store.assetNames().empty());
    EXPECT_TRUE(store->persistenceIsReady());
    store.addText("new");
    store.restart();
    EXPECT_EQ(store.texts(), Texts{"new"});
  }
}

TEST(ClipStoreClear, APlainHistoryThatIsNoneGoesToo) {
  TestStore store;
  store.quit();
  std::filesystem::remove(store.base() / "history.vntl");
  ASSERT_FALSE(store.disk().writeNewFile(store.base() / "history.json", toBytes("[{"), 0600));
  store.restart();
  ASSERT_FALSE(store->persistenceIsReady());
  EXPECT_TRUE(store->clear(false));
  EXPECT_FALSE(std::filesystem::exists(store->legacyIndexUrl()));
  EXPECT_TRUE(store->persistenceIsReady());
}

TEST(ClipStoreClear, AHistoryThatCanBeReadByNowKeepsItsPins) {
  TestStore store;
  store->togglePinned(store.addText("pin"));
  store.addText("a");
  store.files().makeUnreadable(store->indexUrl());
  store.restart();
  ASSERT_FALSE(store->persistenceIsReady());
  EXPECT_FALSE(store->clear(false));
  EXPECT_TRUE(std::filesystem::exists(store->indexUrl()));
  store.files().recover();
  EXPECT_TRUE(store->clear(false));
  EXPECT_EQ(store.texts(), Texts{"pin"});
  store.restart();
  EXPECT_EQ(store.texts(), Texts{"pin"});
}

TEST(ClipStoreClear, OfEverythingTakesAHistoryThatCannotBeReadAtAll) {
  TestStore store;
  store.addText("a");
  store.files().makeUnreadable(store->indexUrl());
  store.restart();
  EXPECT_TRUE(store->clear(true));
  store.files().recover();
  EXPECT_TRUE(store->persistenceIsReady());
  EXPECT_TRUE(store.savedItems()->empty());
}

/// Nothing can be changed on it.
void makeReadOnly(TestStore& store) {
  using Operation = FaultyFileSystem::Operation;
  for (const Operation operation : {Operation::writeNewFile, Operation::rename, Operation::remove,
                                    Operation::setPermissions, Operation::createDirectories}) {
    store.files().fail(operation, std::errc::read_only_file_system);
  }
}

TEST(ClipStoreClear, ClaimsNothingOnADiskThatCannotBeWrittenAndIsMadeUpForLater) {
  for (const bool includingPinned : {false, true}) {
    TestStore store;
    store->togglePinned(store.addText("pin"));
    store->captureImage(FakeImage({1, 1}, "picture"), {});
    makeReadOnly(store);
    EXPECT_FALSE(store->clear(includingPinned)) << includingPinned;
    EXPECT_EQ(store->items().size(), includingPinned ? 0U : 1U);
    store.files().recover();
    store.dispatch().advance(Seconds(60));
    EXPECT_EQ(store.savedItems()->size(), includingPinned ? 0U : 1U);
    EXPECT_TRUE(store.assetNames().empty());
    EXPECT_TRUE(store->clear(includingPinned));
  }
}

TEST(ClipStoreClear, ClaimsNothingWhileAPlainHistoryStays) {
  TestStore store;
  ASSERT_FALSE(store.disk().writeNewFile(store->legacyIndexUrl(), toBytes("[]"), 0600));
  store.files().fail(FaultyFileSystem::Operation::remove, std::errc::io_error);
  EXPECT_FALSE(store->clear(true));
}

TEST(ClipStoreClear, LeavesAHistoryThatAnotherProgramHolds) {
  TestStore store;
  store.addText("theirs");
  store.quit();
  const auto before = store.disk().readFile(store.base() / "history.vntl", 1 << 20U);
  store.files().fail(FaultyFileSystem::Operation::claim, std::errc::device_or_resource_busy);
  store.restart();
  EXPECT_FALSE(store->persistenceIsReady());
  EXPECT_FALSE(store->clear(true));
  EXPECT_EQ(store.disk().readFile(store.base() / "history.vntl", 1 << 20U), before);
  store.files().recover();
  store.restart();
  EXPECT_EQ(store.texts(), Texts{"theirs"});
}

TEST(ClipStoreSetAside, KeepsTheOldHistoryWithItsPicturesAndBeginsAnew) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "picture"), {});
  const auto old = store.disk().readFile(store->indexUrl(), 1 << 20U).value();
  const Texts pictures = store.assetNames();
  store.restartWithAnotherKey();
  const auto aside = store->setAside();
  EXPECT_EQ(aside.outcome, ClipStore::SetAside::done);
  EXPECT_EQ(aside.history, store.base() / "history.vntl.20250314-092653");
  EXPECT_EQ(store.disk().readFile(aside.history, 1 << 20U), old);
  EXPECT_TRUE(std::filesystem::exists(store.base() / "Assets.20250314-092653" / pictures.at(0)));
  EXPECT_TRUE(store->persistenceIsReady());
  EXPECT_TRUE(store.assetNames().empty());
  store.addText("new");
  store.restart();
  EXPECT_EQ(store.texts(), Texts{"new"});
}

TEST(ClipStoreSetAside, OverwritesNothing) {
  TestStore store;
  for (const std::string suffix : {"", "-2"}) {
    store.restartWithAnotherKey();
    ASSERT_FALSE(store->persistenceIsReady());
    EXPECT_EQ(store->setAside().history, store.base() / ("history.vntl.20250314-092653" + suffix));
  }
}

TEST(ClipStoreSetAside, TakesAPlainHistoryThatIsNone) {
  TestStore store;
  store.quit();
  std::filesystem::remove(store.base() / "history.vntl");
  ASSERT_FALSE(store.disk().writeNewFile(store.base() / "history.json", toBytes("[{"), 0600));
  store.restart();
  EXPECT_EQ(store->setAside().history, store.base() / "history.json.20250314-092653");
  EXPECT_TRUE(store->persistenceIsReady());
}

TEST(ClipStoreSetAside, ChangesNothingWhenTheHistoryIsOpenOrCanBe) {
  TestStore store;
  store.addText("a");
  EXPECT_EQ(store->setAside().outcome, ClipStore::SetAside::notNeeded);
  store.files().makeUnreadable(store->indexUrl());
  store.restart();
  store.files().recover();
  EXPECT_EQ(store->setAside().outcome, ClipStore::SetAside::notNeeded);
  EXPECT_EQ(store.texts(), Texts{"a"});
}

TEST(ClipStoreSetAside, SaysWhereTheOldHistoryIsWhenNoNewOneCanBegin) {
  TestStore store;
  store.restartWithAnotherKey();
  // Behind two preparations of five steps, two moves and a sync.
  store.files().failAt(13, std::errc::no_space_on_device);
  const auto aside = store->setAside();
  EXPECT_EQ(aside.outcome, ClipStore::SetAside::failed);
  EXPECT_EQ(aside.history, store.base() / "history.vntl.20250314-092653");
  EXPECT_TRUE(std::filesystem::exists(aside.history));
}

TEST(ClipStoreSetAside, PutsBackWhatItMovedWhenTheRestCannotBe) {
  TestStore store;
  store->captureImage(FakeImage({1, 1}, "picture"), {});
  const Texts pictures = store.assetNames();
  const auto storage = store.storage();
  store.restartWithAnotherKey();
  // The pictures' directory moves, its history does not: behind two preparations of five steps.
  const std::size_t before = store.files().calls().size();
  store.files().failAt(11, std::errc::no_space_on_device);
  EXPECT_EQ(store->setAside().outcome, ClipStore::SetAside::failed);
  const auto& calls = store.files().calls();
  EXPECT_EQ(std::count_if(calls.begin() + static_cast<std::ptrdiff_t>(before), calls.end(),
                          [](const FaultyFileSystem::Call& call) {
                            return call.operation == FaultyFileSystem::Operation::rename;
                          }),
            3);
  store.files().recover();
  EXPECT_EQ(store.assetNames(), pictures);
  EXPECT_TRUE(std::filesystem::exists(store->indexUrl()));
  const ClipStore again(store.services(), store.base(), storage, {});
  EXPECT_EQ(again.items().size(), 1U);
}

/// A store whose key lies in a keychain that answers late.
class ClipStoreLateKey : public testing::Test {
 protected:
  ClipStoreLateKey() {
    start();
    keychain_.answersUpdatesLate = true;
  }

  void start() { store_.emplace(services_, std::nullopt, nullptr, ClipStoreLimits()); }
  /// Quits and starts again, with the key that the keychain then holds.
  void restart() {
    store_.reset();
    start();
  }
  void answer() {
    keychain_.makeUpdates();
    keychain_.tellOfUpdates();
  }
  [[nodiscard]] Texts texts() const {
    Texts texts;
    for (const ClipItem& item : store_->items()) texts.push_back(item.preview);
    return texts;
  }
  [[nodiscard]] Bytes key() { return *keychain_.key(FakeKeychain::Backend::dataProtection); }
  [[nodiscard]] std::optional<Bytes> history() {
    return disk_.readFile(store_->indexUrl(), 1 << 20U);
  }

  TemporaryDirectory directory_;
  ManualDispatch dispatch_;
  PosixFileSystem disk_;
  FaultyFileSystem files_{disk_};
  FakeKeychain keychain_;
  AbsentTextRecognition recognition_;
  std::unique_ptr<SerialQueue> queue_ = dispatch_.serialQueue("test.recognition");
  ClipStoreServices services_{dispatch_,         files_,       keychain_,
                              directory_.path(), recognition_, *queue_};
  std::optional<ClipStore> store_;
};

TEST_F(ClipStoreLateKey, FilesAreGoneAtOnceAndTheNewKeyIsUsedWhenTheKeychainHasIt) {
  store_->captureImage(FakeImage({1, 1}, "picture"), {});
  const Bytes before = key();
  const Bytes old = history().value();
  EXPECT_TRUE(store_->clear(true));
  EXPECT_FALSE(std::filesystem::exists(store_->indexUrl()));
  EXPECT_TRUE(std::filesystem::is_empty(store_->assetsUrl()));
  EXPECT_EQ(key(), before);
  answer();
  EXPECT_NE(key(), before);
  EXPECT_THROW((void)store_->secureStorage()->open(old), CipherError);
  EXPECT_NO_THROW((void)store_->secureStorage()->open(history().value()));
  restart();
  EXPECT_TRUE(store_->persistenceIsReady());
}

TEST_F(ClipStoreLateKey, WhatIsCopiedMeanwhileIsSealedUnderTheOldKeyAndThenAnew) {
  EXPECT_TRUE(store_->clear(true));
  store_->insert(textItem("meanwhile"));
  store_->captureImage(FakeImage({1, 1}, "picture"), {});
  const Bytes meanwhile = history().value();
  EXPECT_NO_THROW((void)store_->secureStorage()->open(meanwhile));
  answer();
  EXPECT_THROW((void)store_->secureStorage()->open(meanwhile), CipherError);
  restart();
  EXPECT_EQ(texts().size(), 2U);
  ASSERT_TRUE(store_->persistenceIsReady());
  EXPECT_EQ(store_->assetData(store_->items()[0]), toBytes("picture"));
}

TEST_F(ClipStoreLateKey, QuittingMeanwhileKeepsTheOldKeyAndLosesNothing) {
  EXPECT_TRUE(store_->clear(true));
  store_->insert(textItem("meanwhile"));
  const Bytes before = key();
  store_.reset();
  keychain_.makeUpdates();
  EXPECT_EQ(key(), before);
  start();
  EXPECT_EQ(texts(), Texts{"meanwhile"});
}

TEST_F(ClipStoreLateKey, QuittingBeforeTheAnswerWasHeardOfLosesNothing) {
  EXPECT_TRUE(store_->clear(true));
  store_->insert(textItem("meanwhile"));
  const Bytes before = key();
  keychain_.makeUpdates();
  restart();
  EXPECT_NE(key(), before);
  EXPECT_EQ(texts(), Texts{"meanwhile"});
}

TEST_F(ClipStoreLateKey, ASuddenEndMeanwhileLeavesAHistoryThatLoads) {
  store_->insert(textItem("old"));
  EXPECT_TRUE(store_->clear(true));
  keychain_.makeUpdates();
  files_.dieAt(0, FaultyFileSystem::Progress::none);
  store_.reset();
  files_.recover();
  start();
  EXPECT_TRUE(store_->persistenceIsReady());
  EXPECT_TRUE(store_->items().empty());
}

TEST_F(ClipStoreLateKey, OnAFullDiskNothingIsLeftUnderTheOldKey) {
  EXPECT_TRUE(store_->clear(true));
  store_->insert(textItem("meanwhile"));
  files_.fail(FaultyFileSystem::Operation::writeNewFile, std::errc::no_space_on_device);
  answer();
  EXPECT_FALSE(history());
  files_.recover();
  dispatch_.advance(Seconds(60));
  restart();
  EXPECT_EQ(texts(), Texts{"meanwhile"});
}

TEST_F(ClipStoreLateKey, AFileThatStaysBehindMeanwhileIsNoClearedHistory) {
  store_->insert(textItem("old"));
  files_.fail(FaultyFileSystem::Operation::remove, std::errc::read_only_file_system);
  EXPECT_FALSE(store_->clear(true));
}

TEST_F(ClipStoreLateKey, ASecondClearMeanwhileAsksForNoOtherKey) {
  EXPECT_TRUE(store_->clear(true));
  store_->insert(textItem("meanwhile"));
  EXPECT_TRUE(store_->clear(true));
  EXPECT_EQ(keychain_.waitingUpdates(), 1);
  answer();
  restart();
  EXPECT_TRUE(store_->persistenceIsReady());
  EXPECT_TRUE(store_->items().empty());
}

TEST_F(ClipStoreLateKey, ARefusedKeyIsTriedAgainByTheNextClear) {
  EXPECT_TRUE(store_->clear(true));
  const Bytes before = key();
  keychain_.failOnce(FakeKeychain::Operation::update, FakeKeychain::Backend::dataProtection,
                     keychainStatus::userCanceled);
  answer();
  EXPECT_EQ(key(), before);
  EXPECT_TRUE(history());
  EXPECT_TRUE(store_->clear(true));
  answer();
  EXPECT_NE(key(), before);
}

TEST(ClipStoreClear, OfNothingStillTells) {
  TestStore store;
  EXPECT_TRUE(store->clear(false));
  EXPECT_EQ(store.changes(), 1);
}

}  // namespace
}  // namespace vantorel
