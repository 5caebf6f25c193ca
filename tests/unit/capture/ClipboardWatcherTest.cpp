// SPDX-License-Identifier: MIT
#include "capture/ClipboardWatcher.h"

#include <gmock/gmock.h>

#include "base/ContentFingerprint.h"
#include "unit/capture/WatchedPasteboard.h"

namespace vantorel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

using ClipboardWatcherTest = WatchedPasteboard;

TEST_F(ClipboardWatcherTest, NeverCapturesWhatWasThereBeforeIt) {
  pasteboard.offerText("from before");
  makeWatcher();
  watcher->start();
  dispatch().advance(Seconds(2));
  EXPECT_EQ(count(), 0U);
  EXPECT_THAT(pasteboard.reads(), IsEmpty());
}

TEST_F(ClipboardWatcherTest, CapturesAChangeAtTheNextPollWithoutAnyAnnouncement) {
  pasteboard.setAnnouncing(false);
  watcher->start();
  pasteboard.offerText("quiet");
  dispatch().advance(Seconds(0.34));
  EXPECT_EQ(count(), 0U);
  dispatch().advance(Seconds(0.01));
  EXPECT_THAT(history.texts(), ElementsAre("quiet"));
}

TEST_F(ClipboardWatcherTest, RestsWhileEveryChangeIsAnnounced) {
  pasteboard.setAnnouncesEveryChange(true);
  watcher->start();
  EXPECT_EQ(dispatch().timerCount(), 0U);
  pasteboard.offerText("announced");
  dispatch().runQueued();
  EXPECT_THAT(history.texts(), ElementsAre("announced"));

  pasteboard.setAnnouncesEveryChange(false);
  pasteboard.setAnnouncing(false);
  EXPECT_THAT(dispatch().repeatingIntervals(), ElementsAre(ClipboardWatcher::pollInterval));
  pasteboard.offerText("found");
  dispatch().advance(ClipboardWatcher::pollInterval);
  EXPECT_THAT(history.texts(), ElementsAre("found", "announced"));
}

TEST_F(ClipboardWatcherTest, CapturesAnAnnouncedChangeAtOnce) {
  watcher->start();
  pasteboard.offerText("announced");
  dispatch().runQueued();
  EXPECT_THAT(history.texts(), ElementsAre("announced"));
}

TEST_F(ClipboardWatcherTest, APollWithoutAChangeReadsNothing) {
  copyText("once");
  pasteboard.forgetReads();
  pollAndRead();
  pollAndRead();
  EXPECT_THAT(pasteboard.reads(), IsEmpty());
  EXPECT_EQ(count(), 1U);
}

TEST_F(ClipboardWatcherTest, ATextEntryCarriesAllThatWasCopied) {
  copy({.string = "  Hello\n", .rtf = toBytes("{\\rtf1}"), .html = toBytes("<b>Hello</b>")});
  ASSERT_EQ(count(), 1U);
  const auto& item = newest();
  EXPECT_NE(item.id, Uuid());
  EXPECT_EQ(item.kind, ClipKind::text);
  EXPECT_EQ(item.createdAt, dispatch().now());
  EXPECT_EQ(item.title, "Text");
  EXPECT_EQ(item.preview, "Hello");
  EXPECT_EQ(item.text.value().get(), "  Hello\n");
  EXPECT_EQ(item.contentHash, ContentFingerprint::data(bytesOf("  Hello\n")));
  EXPECT_THAT(item.filePaths, IsEmpty());
  EXPECT_EQ(item.assetFilename, std::nullopt);
  EXPECT_EQ(item.sourceAppName, "Editor");
  EXPECT_EQ(item.sourceBundleIdentifier, "com.acme.editor");
  EXPECT_EQ(item.rtfData.value().get(), toBytes("{\\rtf1}"));
  EXPECT_EQ(item.htmlData.value().get(), toBytes("<b>Hello</b>"));
  EXPECT_EQ(item.isPinned, false);
  EXPECT_EQ(item.customName, std::nullopt);
  EXPECT_EQ(item.pinOrder, std::nullopt);
  EXPECT_EQ(item.lastCopiedAt, std::nullopt);
  EXPECT_EQ(item.recognizedText, std::nullopt);
}

TEST_F(ClipboardWatcherTest, APlainTextHasNoRicherForms) {
  copyText("plain");
  EXPECT_EQ(newest().rtfData, std::nullopt);
  EXPECT_EQ(newest().htmlData, std::nullopt);
}

TEST_F(ClipboardWatcherTest, PreviewsTheFirst500CharactersAndKeepsTheWholeText) {
  std::string text;
  for (int i = 0; i < 600; ++i) text += "é";
  copyText(" \n\t" + text);
  EXPECT_EQ(newest().preview, text.substr(0, 1000));  // two bytes each
  EXPECT_EQ(newest().text.value().get(), " \n\t" + text);
}

TEST_F(ClipboardWatcherTest, BlankTextIsNoEntryEvenBesideAnImage) {
  for (const auto* blank : {" \n\t ", "", "\u00A0\u2029"}) {
    pasteboard.forgetReads();
    copy({.string = blank, .image = picture()});
    EXPECT_EQ(count(), 0U);
    EXPECT_THAT(pasteboard.reads(), ElementsAre(Form::types, Form::files, Form::string));
  }
}

TEST_F(ClipboardWatcherTest, FilesBesideTextAreAFilesEntryOnly) {
  copy({.string = "/tmp/a.txt", .files = {"/tmp/a.txt", "/tmp/b.txt"}, .image = picture()});
  ASSERT_EQ(count(), 1U);
  EXPECT_EQ(newest().kind, ClipKind::files);
  EXPECT_THAT(newest().filePaths, ElementsAre("/tmp/a.txt", "/tmp/b.txt"));
  EXPECT_EQ(newest().sourceAppName, "Editor");
  EXPECT_THAT(pasteboard.reads(), ElementsAre(Form::types, Form::files));
}

TEST_F(ClipboardWatcherTest, AnImageBesideTextIsATextEntry) {
  copy({.string = "caption", .image = picture()});
  ASSERT_EQ(count(), 1U);
  EXPECT_EQ(newest().kind, ClipKind::text);
  EXPECT_THAT(pasteboard.reads(), Not(Contains(Form::image)));
}

TEST_F(ClipboardWatcherTest, AnImageAloneIsAnImageEntry) {
  copy({.image = picture()});
  ASSERT_EQ(count(), 1U);
  EXPECT_EQ(newest().kind, ClipKind::image);
  EXPECT_EQ(newest().preview, "640 × 480 px");
  EXPECT_EQ(newest().sourceBundleIdentifier, "com.acme.editor");
}

TEST_F(ClipboardWatcherTest, NothingThatItKnowsIsNoEntry) {
  copy({.types = {"application/x-spreadsheet-cells"}});
  EXPECT_EQ(count(), 0U);
}

TEST_F(ClipboardWatcherTest, AnEmptyPasteboardIsAskedForNothing) {
  copy({});
  EXPECT_EQ(count(), 0U);
  EXPECT_THAT(pasteboard.reads(), ElementsAre(Form::types));
}

TEST_F(ClipboardWatcherTest, MarkedContentsAreNeverAskedFor) {
  copy({.types = {"org.nspasteboard.ConcealedType"}, .string = "secret", .image = picture()});
  EXPECT_EQ(count(), 0U);
  EXPECT_THAT(pasteboard.reads(), ElementsAre(Form::types));
}

TEST_F(ClipboardWatcherTest, NothingIsAskedForBehindALockedScreen) {
  watcher->start();
  copyText("before");
  pasteboard.forgetReads();
  lock.setLocked(true);
  copyText("behind the lock");
  lock.setLocked(false);
  pollAndRead();
  EXPECT_THAT(pasteboard.reads(), IsEmpty());
  copyText("after");
  EXPECT_THAT(history.texts(), ElementsAre("after", "before"));
}

TEST_F(ClipboardWatcherTest, WhatIsSeenOnlyAfterTheLockWasCopiedBehindIt) {
  watcher->start();
  pasteboard.setAnnouncing(false);
  lock.setLocked(true);
  pasteboard.offerText("behind the lock");
  lock.setLocked(false);
  pollAndRead();
  EXPECT_EQ(count(), 0U);
}

TEST_F(ClipboardWatcherTest, WhatIsBeingReadWhenTheScreenIsLockedIsKept) {
  watcher->start();
  pasteboard.offerText("just before");
  watcher->poll();
  lock.setLocked(true);
  dispatch().runQueued();
  EXPECT_THAT(history.texts(), ElementsAre("just before"));
}

TEST_F(ClipboardWatcherTest, OnceStoppedItHearsOfNoLock) {
  watcher->start();
  watcher->stop();
  pasteboard.offerText("unseen");
  const auto seen = watcher->lastChangeCount();
  lock.setLocked(false);
  EXPECT_EQ(watcher->lastChangeCount(), seen);
}

TEST_F(ClipboardWatcherTest, NothingIsAskedForDuringAPause) {
  privacy.setPausedUntil(advanced(dispatch().now(), Seconds(60)));
  copyText("private");
  EXPECT_EQ(count(), 0U);
  EXPECT_THAT(pasteboard.reads(), IsEmpty());
}

TEST_F(ClipboardWatcherTest, NothingIsAskedOfAPasswordManager) {
  workspace.setFront(keeper.processIdentifier);
  copyText("hunter2");
  EXPECT_EQ(count(), 0U);
  EXPECT_THAT(pasteboard.reads(), IsEmpty());
}

TEST_F(ClipboardWatcherTest, WhatWasIgnoredIsNotCapturedWhenThePauseEnds) {
  privacy.setPausedUntil(advanced(dispatch().now(), Seconds(60)));
  watcher->start();
  pasteboard.offerText("private");
  dispatch().advance(Seconds(120));
  EXPECT_FALSE(privacy.isPaused());
  EXPECT_EQ(count(), 0U);
  pasteboard.offerText("public");
  dispatch().runQueued();
  EXPECT_THAT(history.texts(), ElementsAre("public"));
}

TEST_F(ClipboardWatcherTest, WhatAnExcludedApplicationCopiedIsNotCapturedLater) {
  privacy.setExcludedBundleIds({"com.acme.editor"});
  copyText("private");
  privacy.setExcludedBundleIds({});
  pollAndRead();
  EXPECT_EQ(count(), 0U);
}

TEST_F(ClipboardWatcherTest, CopiesMadeInThisApplicationAreNobodys) {
  const auto own = workspace.launch(30, "com.vantorel.Vantorel", "Panel");
  const auto namesake = workspace.launch(31, "org.example.other", "Vantorel");
  for (const auto& application : {own, namesake}) {
    workspace.setFront(application.processIdentifier);
    EXPECT_EQ(watcher->currentSourceApp(), SourceApp{});
  }
}

TEST_F(ClipboardWatcherTest, TwoAbsentIdentifiersAreTheSameApplication) {
  workspace.launch({40, std::nullopt, "Nameless", ActivationPolicy::regular});
  workspace.setFront(40);
  EXPECT_EQ(watcher->currentSourceApp(), (SourceApp{"Nameless", std::nullopt}));
  workspace.setOwnBundleIdentifier(std::nullopt);
  EXPECT_EQ(watcher->currentSourceApp(), SourceApp{});
}

TEST_F(ClipboardWatcherTest, CopiesWithNothingInFrontAreNobodys) {
  workspace.setFront(std::nullopt);
  copyText("orphan");
  ASSERT_EQ(count(), 1U);
  EXPECT_EQ(newest().sourceAppName, std::nullopt);
  EXPECT_EQ(newest().sourceBundleIdentifier, std::nullopt);
}

TEST_F(ClipboardWatcherTest, WhatABridgeOffersIsNotFromTheWindowInFront) {
  pasteboard.offer({.string = "from beyond", .isBridge = true});
  watcher->poll();
  dispatch().runQueued();
  ASSERT_EQ(count(), 1U);
  EXPECT_EQ(newest().sourceAppName, std::nullopt);
  EXPECT_EQ(newest().sourceBundleIdentifier, std::nullopt);
}

TEST_F(ClipboardWatcherTest, ItsOwnWritesAreNotCapturedOnceItWasTold) {
  watcher->start();
  ASSERT_TRUE(pasteboard.writeString("pasted"));
  watcher->advanceLastChangeCount();
  EXPECT_EQ(watcher->lastChangeCount(), pasteboard.changeCount());
  dispatch().advance(Seconds(1));
  EXPECT_EQ(count(), 0U);
  EXPECT_THAT(pasteboard.reads(), IsEmpty());
}

TEST_F(ClipboardWatcherTest, StartingTwiceKeepsOneTimer) {
  watcher->start();
  watcher->start();
  EXPECT_THAT(dispatch().repeatingIntervals(), ElementsAre(Seconds(0.35)));
}

TEST_F(ClipboardWatcherTest, ListensOnlyWhileItIsStarted) {
  EXPECT_FALSE(pasteboard.hasChangeHandler());
  watcher->start();
  EXPECT_TRUE(pasteboard.hasChangeHandler());
  pasteboard.offerText("too late");
  watcher->stop();
  dispatch().advance(Seconds(2));
  EXPECT_FALSE(pasteboard.hasChangeHandler());
  EXPECT_FALSE(pasteboard.hasOwnerExitHandler());
  EXPECT_THAT(dispatch().repeatingIntervals(), IsEmpty());
  EXPECT_EQ(count(), 0U);
}

TEST_F(ClipboardWatcherTest, CanBePolledWithoutBeingStarted) {
  copyText("by hand");
  EXPECT_THAT(history.texts(), ElementsAre("by hand"));
}

TEST_F(ClipboardWatcherTest, CapturesALargeTextWhole) {
  const std::string text(5'000'000, 'x');
  copyText(text);
  ASSERT_EQ(count(), 1U);
  EXPECT_EQ(newest().text.value().get(), text);
  EXPECT_EQ(newest().preview.size(), 500U);
}

}  // namespace
}  // namespace vantorel
