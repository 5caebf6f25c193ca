// SPDX-License-Identifier: MIT
// The program that was copied from has ended, and its contents with it.
#include <gmock/gmock.h>

#include "unit/capture/WatchedPasteboard.h"

namespace vantorel {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class ContentsLostTest : public WatchedPasteboard {
 protected:
  ContentsLostTest() { watcher->start(); }
  void offerAndRead(FakePasteboard::Owner owner) {
    pasteboard.offer(std::move(owner));
    dispatch().runQueued();
  }
  void endOwner() {
    pasteboard.endOwner();
    dispatch().runQueued();
  }
};

TEST_F(ContentsLostTest, NamesTheNewestCapture) {
  offerAndRead({.string = "first"});
  offerAndRead({.string = "second", .html = toBytes("<i>second</i>")});
  endOwner();
  ASSERT_THAT(lost, SizeIs(1));
  EXPECT_EQ(lost.front(), newest());
  EXPECT_EQ(lost.front().text.value().get(), "second");
}

TEST_F(ContentsLostTest, NamesTheEntryThatACopyWasMergedWith) {
  offerAndRead({.string = "first"});
  const auto id = newest().id;
  offerAndRead({.string = "second"});
  dispatch().advance(Seconds(1));
  offerAndRead({.string = "first"});
  endOwner();
  ASSERT_THAT(lost, SizeIs(1));
  EXPECT_EQ(lost.front().id, id);
}

TEST_F(ContentsLostTest, NamesAnEntryThatWasCopiedTwiceInARow) {
  offerAndRead({.string = "same"});
  dispatch().advance(Seconds(1));
  offerAndRead({.string = "same"});
  dispatch().advance(Seconds(1));
  offerAndRead({.string = "same"});
  endOwner();
  ASSERT_THAT(lost, SizeIs(1));
  EXPECT_EQ(lost.front().text.value().get(), "same");
}

TEST_F(ContentsLostTest, NamesAPinnedEntryWhereverItStands) {
  offerAndRead({.string = "a"});
  const auto a = newest().id;
  offerAndRead({.string = "b"});
  const auto b = newest().id;
  ASSERT_EQ(history->togglePinned(a), PinResult::toggled);
  ASSERT_EQ(history->togglePinned(b), PinResult::toggled);
  dispatch().advance(Seconds(1));
  offerAndRead({.string = "b"});
  ASSERT_EQ(newest().id, a);
  endOwner();
  ASSERT_THAT(lost, SizeIs(1));
  EXPECT_EQ(lost.front().id, b);
}

TEST_F(ContentsLostTest, NamesImagesAndFiles) {
  offerAndRead({.image = picture()});
  endOwner();
  ASSERT_THAT(lost, SizeIs(1));
  EXPECT_EQ(lost.back().kind, ClipKind::image);
  offerAndRead({.files = {"/tmp/a.txt"}});
  endOwner();
  ASSERT_THAT(lost, SizeIs(2));
  EXPECT_EQ(lost.back().kind, ClipKind::files);
}

TEST_F(ContentsLostTest, ShowsTheEntryAsItIsNow) {
  offerAndRead({.string = "text"});
  ASSERT_EQ(history->togglePinned(newest().id), PinResult::toggled);
  ASSERT_TRUE(history->renamePinned(newest().id, "a name"));
  endOwner();
  ASSERT_THAT(lost, SizeIs(1));
  EXPECT_EQ(lost.front().customName, "a name");
}

TEST_F(ContentsLostTest, SaysNothingOfWhatPrivacyIgnored) {
  offerAndRead({.string = "public"});
  offerAndRead({.types = {"org.nspasteboard.ConcealedType"}, .string = "secret"});
  endOwner();
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(ContentsLostTest, SaysNothingOfWhatCouldNotBeKept) {
  offerAndRead({.string = "before"});
  offerAndRead({.image = std::make_shared<FakeImage>(Size{10, 10})});
  ASSERT_EQ(count(), 1U);
  endOwner();
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(ContentsLostTest, SaysNothingOnceAnotherProgramHasCopied) {
  offerAndRead({.string = "captured"});
  pasteboard.setAnnouncing(false);
  pasteboard.endOwner();
  pasteboard.offerText("newer, not seen yet");
  dispatch().runQueued();
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(ContentsLostTest, SaysNothingOnceSomethingElseWasSeen) {
  offerAndRead({.string = "older"});
  offerAndRead({.types = {"application/x-unknown"}});
  endOwner();
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(ContentsLostTest, SaysNothingAfterAnOwnWrite) {
  offerAndRead({.string = "captured"});
  ASSERT_TRUE(pasteboard.writeString("own"));
  watcher->advanceLastChangeCount();
  endOwner();
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(ContentsLostTest, SaysNothingOfAnEntryThatIsGone) {
  offerAndRead({.string = "removed"});
  history->remove(newest().id);
  endOwner();
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(ContentsLostTest, SaysNothingOfWhatWasThereBeforeTheWatcher) {
  pasteboard.offerText("from before");
  makeWatcher();
  watcher->start();
  endOwner();
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(ContentsLostTest, SaysNothingOnceItHasStoppedListening) {
  offerAndRead({.string = "captured"});
  pasteboard.endOwner();
  watcher->stop();
  dispatch().runQueued();
  EXPECT_THAT(lost, IsEmpty());
}

TEST_F(ContentsLostTest, SaysItOnce) {
  offerAndRead({.string = "captured"});
  endOwner();
  endOwner();
  EXPECT_THAT(lost, SizeIs(1));
}

TEST_F(ContentsLostTest, TakingTheSameContentsAsSeenChangesNothing) {
  offerAndRead({.string = "captured"});
  watcher->advanceLastChangeCount();
  endOwner();
  EXPECT_THAT(lost, SizeIs(1));
}

}  // namespace
}  // namespace vantorel
