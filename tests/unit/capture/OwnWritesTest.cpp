// SPDX-License-Identifier: MIT
// Another program takes over what this one wrote, and offers it anew.
#include <gmock/gmock.h>

#include "unit/capture/WatchedPasteboard.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OwnWritesTest : public WatchedPasteboard {
 protected:
  static constexpr ProcessId agent = 77;

  void writeRichText() {
    ASSERT_TRUE(pasteboard.writeItem({"rich", std::nullopt, toBytes("<b>rich</b>")}));
    watcher->noteOwnWrite();
    dispatch().runQueued();
  }
  void copyRichTextAndAnother() {
    copy({.string = "rich", .html = toBytes("<b>rich</b>")});
    copyText("newer");
    dispatch().advance(Seconds(1));
  }
};

TEST_F(OwnWritesTest, ATextThatIsTakenOverStaysTheEntryItIs) {
  copyRichTextAndAnother();
  writeRichText();
  copy({.string = "rich", .process = agent});
  EXPECT_THAT(history.texts(), ElementsAre("newer", "rich"));
  EXPECT_EQ(history->items().back().htmlData.value().get(), toBytes("<b>rich</b>"));
  EXPECT_EQ(history->items().back().lastCopiedAt, std::nullopt);
}

TEST_F(OwnWritesTest, ItIsKnownHoweverOftenAndLateItIsTakenOver) {
  copyRichTextAndAnother();
  writeRichText();
  for (int i = 0; i < 3; ++i) {
    dispatch().advance(Seconds(3600));
    copy({.string = "rich", .process = agent});
  }
  EXPECT_THAT(history.texts(), ElementsAre("newer", "rich"));
}

TEST_F(OwnWritesTest, WhereNobodyKnowsWhoOwnsItItIsACopy) {
  copyRichTextAndAnother();
  writeRichText();
  copy({.string = "rich"});
  EXPECT_THAT(history.texts(), ElementsAre("rich", "newer"));
}

TEST_F(OwnWritesTest, WhatAnAgentTookOverOutlivesTheAgent) {
  std::vector<std::string> kept;
  watcher->onContentsLost = [&](const ClipItem& item, const std::function<void()>& done) {
    kept.push_back(item.text->get());
    done();
  };
  watcher->start();
  copyRichTextAndAnother();
  writeRichText();
  copy({.string = "rich", .process = agent});
  pasteboard.endOwner();
  dispatch().advance(Seconds(1));
  EXPECT_THAT(kept, ElementsAre("rich"));
}

TEST_F(OwnWritesTest, TheApplicationInFrontHasCopiedIt) {
  copyRichTextAndAnother();
  writeRichText();
  copy({.string = "rich", .process = editor.processIdentifier});
  EXPECT_THAT(history.texts(), ElementsAre("rich", "newer"));
}

TEST_F(OwnWritesTest, AnotherTextIsANewCopyAndEndsTheMemory) {
  copyRichTextAndAnother();
  writeRichText();
  copy({.string = "other", .process = agent});
  copy({.string = "rich", .process = agent});
  EXPECT_THAT(history.texts(), ElementsAre("rich", "other", "newer"));
}

TEST_F(OwnWritesTest, WhatIsIgnoredOrBlankEndsTheMemoryToo) {
  for (const FakePasteboard::Owner& between :
       {FakePasteboard::Owner{.types = {"org.nspasteboard.ConcealedType"}, .string = "secret"},
        FakePasteboard::Owner{.string = " "}, FakePasteboard::Owner{}}) {
    copyText("rich");
    copyText("newer");
    dispatch().advance(Seconds(1));
    writeRichText();
    copy(between);
    copy({.string = "rich", .process = agent});
    EXPECT_THAT(history.texts(), ElementsAre("rich", "newer"));
  }
}

TEST_F(OwnWritesTest, FilesAreKnownAsAListAndAsText) {
  copy({.files = {"/tmp/a", "/tmp/b"}});
  copyText("newer");
  ASSERT_TRUE(pasteboard.writeFileURLs({"/tmp/a", "/tmp/b"}));
  watcher->noteOwnWrite();
  dispatch().runQueued();
  copy({.string = "/tmp/a\n/tmp/b", .files = {"/tmp/a", "/tmp/b"}, .process = agent});
  copy({.string = "/tmp/a\n/tmp/b", .process = agent});
  ASSERT_EQ(count(), 2U);
  EXPECT_EQ(newest().kind, ClipKind::text);
  EXPECT_EQ(newest().text.value().get(), "newer");
}

TEST_F(OwnWritesTest, APictureIsKnownByItsPngForm) {
  copy({.image = picture("one")});
  copyText("newer");
  ASSERT_TRUE(pasteboard.writeImage(picture("one")));
  watcher->noteOwnWrite();
  dispatch().runQueued();
  copy({.image = picture("one"), .process = agent});
  EXPECT_EQ(newest().kind, ClipKind::text);
  copy({.image = picture("two"), .process = agent});
  EXPECT_EQ(newest().kind, ClipKind::image);
  EXPECT_EQ(count(), 3U);
}

TEST_F(OwnWritesTest, ACopyThatWasQuickerThanTheNoteIsCaptured) {
  ASSERT_TRUE(pasteboard.writeString("own"));
  pasteboard.offerText("quicker");
  watcher->noteOwnWrite();
  EXPECT_THAT(pasteboard.reads(), IsEmpty()) << "read before privacy was asked";
  pollAndRead();
  EXPECT_THAT(history.texts(), ElementsAre("quicker"));
}

TEST_F(OwnWritesTest, TakingOthersContentsAsSeenReadsNothing) {
  pasteboard.offerText("from a pause");
  watcher->advanceLastChangeCount();
  dispatch().advance(Seconds(1));
  EXPECT_THAT(pasteboard.reads(), IsEmpty());
}

}  // namespace
}  // namespace vantorel
