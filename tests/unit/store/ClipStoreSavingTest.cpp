// SPDX-License-Identifier: MIT
// A history of some megabytes is written while the program goes on.
#include <gmock/gmock.h>

#include <algorithm>

#include "fakes/FakeImage.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;
using Operation = FaultyFileSystem::Operation;
using Outcome = SealedHistory::Outcome;

std::string longText(char letter) { return std::string(3'000'000, letter); }

class SavingALongHistory : public testing::Test {
 protected:
  [[nodiscard]] long writes() {
    const auto& calls = store_.files().calls();
    return std::count_if(calls.begin(), calls.end(), [](const FaultyFileSystem::Call& call) {
      return call.operation == Operation::rename && call.path.filename() == "history.vntl";
    });
  }
  [[nodiscard]] std::size_t savedCount() {
    const auto saved = store_.savedItems();
    return saved ? saved->size() : 0;
  }

  TestStore store_;
};

TEST_F(SavingALongHistory, TellsOfTheChangeAtOnceAndWritesAfterwards) {
  store_.addText("short");
  const auto before = writes();
  store_.addText(longText('a'));
  EXPECT_EQ(store_.changes(), 2);
  EXPECT_EQ(writes(), before);
  store_.dispatch().runQueued();
  EXPECT_EQ(writes(), before + 1);
  EXPECT_EQ(savedCount(), 2U);
}

TEST_F(SavingALongHistory, WritesWhatChangedMeanwhileOnce) {
  const auto before = writes();
  store_.addText(longText('a'));
  store_.addText("b");
  store_.addText("c");
  store_.dispatch().runQueued();
  EXPECT_EQ(writes(), before + 2);
  EXPECT_EQ(savedCount(), 3U);
}

TEST_F(SavingALongHistory, EndsWithTheLatestListOnTheDisk) {
  store_.addText(longText('a'));
  store_.addText("b");
  store_.quit();
  EXPECT_EQ(savedCount(), 2U);
  store_.dispatch().runQueued();
  EXPECT_EQ(savedCount(), 2U);
}

TEST_F(SavingALongHistory, WhatASaveUnderWayHasWrittenIsNotWrittenAgainAtTheEnd) {
  store_.addText(longText('a'));
  const auto before = writes();
  ASSERT_TRUE(store_.dispatch().runOne());  // written, and the main thread not told yet
  store_.quit();
  EXPECT_EQ(writes(), before + 1);
  EXPECT_EQ(savedCount(), 1U);
}

TEST_F(SavingALongHistory, WhatASaveUnderWayCouldNotWriteIsWrittenAtTheEnd) {
  store_.files().fail(Operation::writeNewFile, std::errc::no_space_on_device);
  store_.addText(longText('a'));
  ASSERT_TRUE(store_.dispatch().runOne());
  store_.files().recover();
  store_.quit();
  EXPECT_EQ(savedCount(), 1U);
}

TEST_F(SavingALongHistory, IsOnTheDiskWhenItIsFinishedThoughNothingEnds) {
  store_.addText(longText('a'));
  store_.addText("b");
  EXPECT_EQ(savedCount(), 0U);
  store_->finishSaving();
  EXPECT_EQ(savedCount(), 2U);
  const auto before = writes();
  store_->finishSaving();
  store_.dispatch().runQueued();
  EXPECT_EQ(writes(), before) << "once";
  store_.addText("c");
  store_.dispatch().runQueued();
  EXPECT_EQ(savedCount(), 3U);
}

TEST_F(SavingALongHistory, IsTriedAgainAfterAFailure) {
  store_.files().fail(Operation::writeNewFile, std::errc::no_space_on_device);
  store_.addText(longText('a'));
  store_.dispatch().runQueued();
  EXPECT_EQ(savedCount(), 0U);
  store_.files().recover();
  store_.dispatch().advance(std::chrono::seconds(5));
  EXPECT_EQ(savedCount(), 1U);
}

TEST_F(SavingALongHistory, WithoutAThreadForItIsAFailureThatIsTriedAgain) {
  store_.dispatch().refuseQueues(true);
  EXPECT_NO_THROW(store_.addText(longText('a')));
  EXPECT_EQ(store_.changes(), 1);
  store_.dispatch().runQueued();
  EXPECT_EQ(savedCount(), 0U);
  store_.dispatch().refuseQueues(false);
  store_.dispatch().advance(std::chrono::seconds(5));
  EXPECT_EQ(savedCount(), 1U);
}

TEST_F(SavingALongHistory, WithoutAThreadForItIsDoneAtTheEnd) {
  store_.dispatch().refuseQueues(true);
  EXPECT_NO_THROW(store_.addText(longText('a')));
  store_.quit();
  EXPECT_EQ(savedCount(), 1U);
}

TEST_F(SavingALongHistory, NothingComesBackThatWasClearedMeanwhile) {
  store_.addText(longText('a'));
  EXPECT_TRUE(store_->clear(true));
  store_.dispatch().runQueued();
  EXPECT_THAT(store_.savedItems(), Optional(IsEmpty()));
}

TEST_F(SavingALongHistory, WhatIsBeingWrittenIsGivenUpByAClear) {
  store_.addText(longText('a'));
  EXPECT_TRUE(store_->clear(true));
  do {
    EXPECT_THAT(store_.savedItems(), Optional(IsEmpty()));
  } while (store_.dispatch().runOne());
}

TEST_F(SavingALongHistory, RichTextCountsLikeText) {
  for (const auto form : {&ClipItem::rtfData, &ClipItem::htmlData}) {
    TestStore store;
    ClipItem item = textItem("short");
    item.*form = toBytes(longText('a'));
    store->insert(item);
    EXPECT_THAT(store.savedItems(), Optional(IsEmpty()));
    store.dispatch().runQueued();
    EXPECT_THAT(store.savedItems(), Optional(SizeIs(1)));
  }
}

TEST_F(SavingALongHistory, NamesOfFilesAndTextInPicturesCountLikeText) {
  const std::string word = longText('a');
  ClipItem files = filesItem({"/" + word});
  files.preview.clear();
  ClipItem preview = textItem("short");
  preview.preview = word;
  ClipItem picture = imageItem("0A1B2C3D-0000-4000-8000-000000000000.png", "h");
  picture.recognizedText = word;
  for (const ClipItem& item : {files, preview, picture}) {
    TestStore store;
    store->insert(item);
    EXPECT_THAT(store.savedItems(), Optional(IsEmpty()));
    store.dispatch().runQueued();
    EXPECT_THAT(store.savedItems(), Optional(SizeIs(1)));
  }
}

TEST_F(SavingALongHistory, PinsThatSurviveAClearAreWritten) {
  store_->togglePinned(store_.addText(longText('a')));
  store_.addText("b");
  EXPECT_TRUE(store_->clear(false));
  store_.dispatch().runQueued();
  EXPECT_EQ(savedCount(), 1U);
}

TEST_F(SavingALongHistory, APictureIsDeletedOnlyWhenTheDiskNoLongerNamesIt) {
  store_->captureImage(FakeImage({1, 1}, "picture"), {});
  const auto image = store_->items().front().id;
  store_.addText(longText('a'));
  store_.dispatch().runQueued();
  ASSERT_THAT(store_.assetNames(), SizeIs(1));
  store_->remove(image);
  EXPECT_THAT(store_.assetNames(), SizeIs(1));
  store_.dispatch().runQueued();
  EXPECT_THAT(store_.assetNames(), IsEmpty());
}

TEST(ClipStoreSaving, LeavesADirectoryThatAnotherProgramHasTakenMeanwhile) {
  TestStore s;
  s.addText("ours");
  s.files().fail(Operation::claim, std::errc::device_or_resource_busy);
  s.addText("not there");
  EXPECT_EQ(s->lastSave(), Outcome::failed);
  EXPECT_EQ(s.savedItems()->size(), 1U);
  s.files().recover();
  s.dispatch().advance(Seconds(5));
  EXPECT_EQ(s.savedItems()->size(), 2U);
}

TEST(ClipStoreSaving, SaysWhenItBeginsToFailAndWhenThatIsOver) {
  TestStore s;
  int changes = 0;
  s->onSavingChange = [&] { ++changes; };
  s.addText("saved");
  EXPECT_EQ(s->lastSave(), Outcome::saved);
  s.files().fail(Operation::writeNewFile, std::errc::no_space_on_device);
  s.addText("one");
  s.addText("two");
  EXPECT_EQ(s->lastSave(), Outcome::failed);
  EXPECT_EQ(changes, 1);
  s.files().recover();
  s.dispatch().advance(Seconds(5));
  EXPECT_EQ(s->lastSave(), Outcome::saved);
  EXPECT_EQ(changes, 2);
}

TEST(SavingAFullLongHistory, APictureThatMakesRoomIsDeletedOnlyWhenTheDiskNoLongerNamesIt) {
  ClipStoreLimits limits;
  limits.maxItems = 2;
  TestStore store(limits);
  store->captureImage(FakeImage({1, 1}, "picture"), {});
  store.addText(longText('a'));
  store.dispatch().runQueued();
  store.addText("b");
  ASSERT_THAT(store->items(), SizeIs(2));
  EXPECT_THAT(store.assetNames(), SizeIs(1));
  store.dispatch().runQueued();
  EXPECT_THAT(store.assetNames(), IsEmpty());
}

TEST_F(SavingALongHistory, APictureStaysWhileTheListThatDropsItCannotBeWritten) {
  store_->captureImage(FakeImage({1, 1}, "picture"), {});
  const auto image = store_->items().front().id;
  store_.addText(longText('a'));
  store_.dispatch().runQueued();
  store_.files().fail(Operation::writeNewFile, std::errc::no_space_on_device);
  store_->remove(image);
  store_.dispatch().runQueued();
  EXPECT_THAT(store_.assetNames(), SizeIs(1));
  store_.files().recover();
  store_.dispatch().advance(std::chrono::seconds(5));
  EXPECT_THAT(store_.assetNames(), IsEmpty());
}

TEST_F(SavingALongHistory, AShortListIsWrittenAtOnce) {
  store_.addText("a");
  EXPECT_EQ(savedCount(), 1U);
}

}  // namespace
}  // namespace vantorel
