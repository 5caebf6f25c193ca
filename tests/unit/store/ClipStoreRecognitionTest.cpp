// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <condition_variable>
#include <fstream>
#include <mutex>

#include "base/ContentFingerprint.h"
#include "fakes/FakeImage.h"
#include "fakes/TestStore.h"
#include "platform/posix/ThreadedQueue.h"
#include "store/ClipSearchFilter.h"

namespace vantorel {
namespace {

using Lines = std::vector<std::string>;
using Outcome = Recognition::Outcome;

/// A store that counts what it announces, and pictures whose text is known.
struct Scene {
  TestStore store;
  int searchIndexChanges = 0;

  Scene() { listen(); }
  void listen() {
    store->onSearchIndexChange = [this] { ++searchIndexChanges; };
  }
  void restart() {
    store.restart();
    listen();
  }
  /// Copies the picture; nothing is read yet.
  Uuid copy(const std::string& bytes) {
    store.tick();
    store->captureImage(FakeImage({64, 48}, bytes), {});
    return imageWith(bytes).id;
  }
  void introduce(const std::string& bytes, Lines lines) {
    store.recognition().introduce(toBytes(bytes), std::move(lines));
  }
  ClipItem imageWith(const std::string& bytes) {
    const std::string hash = ContentFingerprint::data(bytesOf(bytes));
    for (const ClipItem& item : store->items()) {
      if (item.contentHash == hash) return item;
    }
    throw std::logic_error("the picture is not in the history");
  }
  std::vector<std::string> imagesRead() {
    std::vector<std::string> images;
    for (const auto& call : store.recognition().calls()) images.emplace_back(textOf(call.image));
    return images;
  }
};

TEST(ClipStoreRecognition, ACapturedPictureIsFoundByAWordInIt) {
  Scene scene;
  scene.introduce("invoice", {"Invoice 2024", "Total 17"});
  const Uuid id = scene.copy("invoice");
  EXPECT_EQ(scene.store.item(id).recognizedText, std::nullopt);
  const int changesBefore = scene.store.changes();

  scene.store.dispatch().runQueued();

  EXPECT_EQ(scene.store.item(id).recognizedText, "Invoice 2024\nTotal 17");
  EXPECT_EQ(scene.store.changes(), changesBefore + 1);
  EXPECT_EQ(scene.searchIndexChanges, 1);
  ClipSearchFilter filter;
  filter.query = "invoice";
  EXPECT_TRUE(filter.includes(scene.store.item(id)));
}

TEST(ClipStoreRecognition, TheTextIsSavedSealed) {
  Scene scene;
  scene.introduce("a", {"very secret words"});
  const Uuid id = scene.copy("a");
  scene.store.dispatch().runQueued();
  const auto saved = scene.store.savedItems();
  ASSERT_TRUE(saved);
  EXPECT_EQ(saved->at(0).recognizedText, "very secret words");
  const auto file = scene.store.disk().readFile(scene.store.base() / "history.vntl", 1 << 20);
  EXPECT_EQ(textOf(*file).find("secret"), std::string_view::npos);
  scene.restart();
  EXPECT_EQ(scene.store.item(id).recognizedText, "very secret words");
}

TEST(ClipStoreRecognition, ReadsWhatWasSealed) {
  Scene scene;
  scene.copy("the very bytes");
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.imagesRead(), Lines{"the very bytes"});
}

TEST(ClipStoreRecognition, APictureCopiedAgainWhileItIsReadIsReadOnce) {
  Scene scene;
  scene.introduce("a", {"word"});
  const Uuid first = scene.copy("a");
  EXPECT_EQ(scene.copy("a"), first) << "while it waits";
  scene.store.recognition().duringReading(
      [&] { EXPECT_EQ(scene.copy("a"), first) << "while it is read"; });
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.imagesRead(), Lines{"a"});
  EXPECT_EQ(scene.store.item(first).recognizedText, "word");
  EXPECT_EQ(scene.searchIndexChanges, 1);
}

TEST(ClipStoreRecognition, APictureWhoseTextIsKnownIsNotReadAgain) {
  Scene scene;
  scene.introduce("a", {"word"});
  scene.copy("a");
  scene.store.dispatch().runQueued();
  scene.copy("a");
  scene.restart();
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.imagesRead(), Lines{"a"});
  EXPECT_EQ(scene.imageWith("a").recognizedText, "word");
}

TEST(ClipStoreRecognition, APictureWithoutTextIsNotReadAgain) {
  Scene scene;
  scene.introduce("empty", {});
  const Uuid id = scene.copy("empty");
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.store.item(id).recognizedText, "");
  EXPECT_EQ(scene.searchIndexChanges, 1);
  scene.restart();
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.imagesRead(), Lines{"empty"});
}

TEST(ClipStoreRecognition, WhatFailedIsReadWhenItIsCopiedAgain) {
  Scene scene;
  const Uuid id = scene.copy("a");
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.store.item(id).recognizedText, std::nullopt);
  EXPECT_EQ(scene.searchIndexChanges, 0);
  scene.introduce("a", {"word"});
  scene.copy("a");
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.store.item(id).recognizedText, "word");
}

TEST(ClipStoreRecognition, WhatFailedIsReadAtTheNextStart) {
  Scene scene;
  const Uuid a = scene.copy("a");
  const Uuid b = scene.copy("b");
  scene.store.dispatch().runQueued();
  scene.introduce("a", {"first"});
  scene.introduce("b", {"second"});
  scene.restart();
  EXPECT_EQ(scene.store.item(a).recognizedText, std::nullopt) << "the start waited for it";
  EXPECT_EQ(scene.store.changes(), 0);
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.store.item(a).recognizedText, "first");
  EXPECT_EQ(scene.store.item(b).recognizedText, "second");
  EXPECT_EQ(scene.store.changes(), 2);
  EXPECT_EQ(scene.searchIndexChanges, 2);
}

TEST(ClipStoreRecognition, OneFailureDoesNotKeepTheNextFromBeingRead) {
  Scene scene;
  scene.store.recognition().introduce(toBytes("bad"), Recognition{Outcome::unreadable, {}});
  scene.introduce("good", {"word"});
  scene.copy("bad");
  scene.copy("good");
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.imagesRead(), (Lines{"bad", "good"}));
  EXPECT_EQ(scene.imageWith("good").recognizedText, "word");
}

TEST(ClipStoreRecognition, AnEntryRemovedMeanwhileDropsTheResult) {
  Scene scene;
  scene.introduce("a", {"word"});
  const Uuid id = scene.copy("a");
  scene.store.recognition().duringReading([&] { scene.store->remove(id); });
  const int before = scene.store.changes();
  scene.store.dispatch().runQueued();
  EXPECT_TRUE(scene.store->items().empty());
  EXPECT_EQ(scene.store.changes(), before + 1) << "only the removal";
  EXPECT_EQ(scene.searchIndexChanges, 0);
}

TEST(ClipStoreRecognition, AnEntryThatComesBackUnderItsIdentityIsRead) {
  Scene scene;
  scene.introduce("a", {"word"});
  const Uuid id = scene.copy("a");
  const ClipItem before = scene.store.item(id);
  scene.store.recognition().duringReading([&] { scene.store->remove(id); });
  scene.store.dispatch().runQueued();
  ASSERT_TRUE(scene.store->items().empty());

  scene.store.recognition().duringReading({});
  scene.store->insert(before);
  scene.copy("a");  // the same picture under the same identity
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.store.item(id).recognizedText, "word") << "its identity was not free again";
}

TEST(ClipStoreRecognition, AReadingThatWasGivenUpBeginsAgainWhenItsEntryIsBackByThen) {
  Scene scene;
  scene.introduce("a", {"word"});
  const Uuid id = scene.copy("a");
  const ClipItem before = scene.store.item(id);
  ClipItem keepsTheFile = imageItem(*before.assetFilename, "another hash");
  keepsTheFile.recognizedText = "known";
  scene.store->insert(keepsTheFile);
  scene.store.recognition().duringReading([&] {
    if (scene.imagesRead().size() > 1) return;
    scene.store->remove(id);
    scene.store->insert(before);
  });
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.imagesRead(), (Lines{"a", "a"}));
  EXPECT_EQ(scene.store.item(id).recognizedText, "word");
}

TEST(ClipStoreRecognition, ATextIsOnlyForTheContentThatWasRead) {
  const std::optional<std::string> hashes[] = {"of another picture", std::nullopt};
  for (const auto& hash : hashes) {
    Scene scene;
    scene.introduce("a", {"word"});
    const Uuid id = scene.copy("a");
    ASSERT_TRUE(scene.store.dispatch().runOne());  // it is read, its text is on its way
    ASSERT_EQ(scene.imagesRead().size(), 1U);
    ClipItem other = scene.store.item(id);
    other.contentHash = hash;
    scene.store->remove(id);
    scene.store->insert(other);
    scene.store.dispatch().runQueued();
    EXPECT_EQ(scene.store.item(id).recognizedText, std::nullopt);
  }
}

TEST(ClipStoreRecognition, TwoAbsentHashesAreEqual) {
  Scene scene;
  scene.introduce("plain", {"word"});
  ClipItem item = imageItem("11111111-0000-4000-8000-000000000000.png", "hash");
  item.contentHash.reset();
  scene.store->insert(item);
  const auto sealed = scene.store.storage()->seal(toBytes("plain"));
  ASSERT_FALSE(
      scene.store.disk().writeNewFile(scene.store.assets() / *item.assetFilename, sealed, 0600));
  scene.restart();
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.store.item(item.id).recognizedText, "word");
}

TEST(ClipStoreRecognition, AReadingIsStoppedWhenItsEntryIsGone) {
  Scene scene;
  const std::function<void(Uuid)> leavings[] = {
      [&](Uuid id) { scene.store->remove(id); },
      [&](Uuid /*id*/) { (void)scene.store->clear(true); }};
  for (const auto& leave : leavings) {
    const Uuid id = scene.copy("a");
    bool wasStopped = false;
    scene.store.recognition().duringReading([&] {
      leave(id);
      wasStopped = scene.store.recognition().isStopRequested();
    });
    scene.store.dispatch().runQueued();
    EXPECT_TRUE(wasStopped);
  }
}

TEST(ClipStoreRecognition, AnEntryThatStaysIsReadToItsEnd) {
  Scene scene;
  scene.introduce("a", {"word"});
  const Uuid id = scene.copy("a");
  const Uuid other = scene.copy("b");
  scene.store.recognition().duringReading([&] {
    if (scene.store->items().size() > 1) scene.store->remove(other);
    EXPECT_FALSE(scene.store.recognition().isStopRequested());
  });
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.store.item(id).recognizedText, "word");
}

TEST(ClipStoreRecognition, AClearedHistoryTakesItsTextsAlong) {
  Scene scene;
  scene.introduce("a", {"word"});
  scene.introduce("b", {"word"});
  scene.copy("a");
  scene.store.dispatch().runQueued();
  scene.copy("b");
  EXPECT_TRUE(scene.store->clear(true));
  scene.store.dispatch().runQueued();
  EXPECT_TRUE(scene.store->items().empty());
  EXPECT_TRUE(scene.store.savedItems()->empty());
  EXPECT_EQ(scene.imagesRead(), Lines{"a"}) << "a picture that is gone was read";
}

TEST(ClipStoreRecognition, AnAssetThatVanishedHasNoText) {
  Scene scene;
  scene.store.recognition().answerOthers({Outcome::recognized, {"word"}});
  const Uuid id = scene.copy("a");
  for (const auto& name : scene.store.assetNames())
    (void)scene.store.disk().remove(scene.store.assets() / name);
  scene.copy("b");
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.store.item(id).recognizedText, std::nullopt);
  EXPECT_EQ(scene.imageWith("b").recognizedText, "word");
}

TEST(ClipStoreRecognition, AnAssetSealedUnderAnotherKeyHasNoText) {
  Scene scene;
  scene.store.recognition().answerOthers({Outcome::recognized, {"word"}});
  const Uuid id = scene.copy("a");
  const auto foreign = SecureStorage::ephemeral()->seal(toBytes("a"));
  std::ofstream(scene.store.assets() / *scene.store.item(id).assetFilename, std::ios::binary)
      << textOf(foreign);
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.store.item(id).recognizedText, std::nullopt);
  EXPECT_TRUE(scene.imagesRead().empty());
}

TEST(ClipStoreRecognition, AnUnsealedLegacyAssetIsReadAsItIs) {
  Scene scene;
  scene.introduce("a", {"word"});
  const Uuid id = scene.copy("a");
  std::ofstream(scene.store.assets() / *scene.store.item(id).assetFilename, std::ios::binary)
      << "a";
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.store.item(id).recognizedText, "word");
}

TEST(ClipStoreRecognition, OnlyPicturesWithAnAssetAreRead) {
  Scene scene;
  scene.store.recognition().answerOthers({Outcome::recognized, {"word"}});
  scene.store.addText("text");
  scene.store->captureFiles({"/tmp/picture.png"}, {});
  ClipItem withoutAsset = imageItem("x.png", "hash");
  withoutAsset.assetFilename.reset();
  scene.store->insert(withoutAsset);
  scene.store.dispatch().runQueued();
  scene.restart();
  scene.store.dispatch().runQueued();
  EXPECT_TRUE(scene.imagesRead().empty());
}

TEST(ClipStoreRecognition, AStoreThatIsGoneReadsNothingMore) {
  Scene scene;
  scene.introduce("a", {"word"});
  scene.introduce("b", {"word"});
  scene.copy("a");
  scene.copy("b");
  ASSERT_TRUE(scene.store.dispatch().runOne());  // "a" is read, its result is on its way
  scene.store.quit();
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.imagesRead(), Lines{"a"});

  scene.restart();
  scene.store.dispatch().runQueued();
  EXPECT_EQ(scene.imageWith("a").recognizedText, "word");
  EXPECT_EQ(scene.imageWith("b").recognizedText, "word");
}

/// Reads until it is asked to stop, as an engine does that works on a large picture.
class EndlessRecognition : public TextRecognition {
 public:
  std::vector<std::string> supportedLanguages() override { return {}; }
  Recognition recognize(ByteView /*image*/, const std::vector<std::string>& /*languages*/,
                        const std::stop_token& stop) override {
    std::unique_lock lock(mutex_);
    reading_ = true;
    changed_.notify_all();
    changed_.wait(lock, stop, [] { return false; });
    return {Recognition::Outcome::stopped, {}};
  }
  void waitUntilReading() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return reading_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable_any changed_;
  bool reading_ = false;
};

TEST(ClipStoreRecognition, QuittingWhileAPictureIsReadDoesNotWaitForIt) {
  const TemporaryDirectory directory;
  ManualDispatch dispatch;
  PosixFileSystem files;
  FakeKeychain keychain;
  EndlessRecognition recognition;
  auto queue = std::make_unique<ThreadedQueue>("test.recognition");
  auto store = std::make_unique<ClipStore>(
      ClipStoreServices{dispatch, files, keychain, directory.path(), recognition, *queue},
      directory.path() / "ClipHistory", nullptr, ClipStoreLimits{});
  store->captureImage(FakeImage({64, 48}, "a"), {});
  recognition.waitUntilReading();
  store.reset();
  queue.reset();  // joins; the test's own time limit is what would fail
  EXPECT_EQ(dispatch.queuedCount(), 0U);
}

}  // namespace
}  // namespace vantorel
