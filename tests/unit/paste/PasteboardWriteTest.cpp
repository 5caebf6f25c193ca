// SPDX-License-Identifier: MIT
// How an entry comes onto the pasteboard.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "base/ContentFingerprint.h"
#include "capture/ClipboardWatcher.h"
#include "fakes/FakeImage.h"
#include "fakes/FakeSessionLock.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/Gate.h"
#include "fakes/TemporaryDirectory.h"
#include "fakes/ThreadedDispatch.h"
#include "unit/paste/PasteScene.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Kind = FakePasteboard::Write::Kind;

/// A disk that does not say whether anything is there before the gate is open.
class UnansweringFiles : public PosixFileSystem {
 public:
  explicit UnansweringFiles(std::shared_ptr<Gate> gate) : gate_(std::move(gate)) {}
  [[nodiscard]] bool exists(const Path& /*path*/) override {
    gate_->pass();
    return true;
  }

 private:
  std::shared_ptr<Gate> gate_;
};

class PasteboardWriteTest : public PasteScene {
 protected:
  [[nodiscard]] bool write(const ClipItem& item, bool asPlainText = false) {
    return controller->writeToPasteboard(item, asPlainText);
  }
  [[nodiscard]] std::string existingFile(const std::string& name) {
    const auto path = directory.path() / name;
    std::ofstream(path) << "contents";
    return path.string();
  }
  [[nodiscard]] static ClipItem richTextItem() {
    auto item = textItem("text");
    item.rtfData = SharedBytes(toBytes("{\\rtf1}"));
    item.htmlData = SharedBytes(toBytes("<p>"));
    return item;
  }

  TemporaryDirectory directory;
};

TEST_F(PasteboardWriteTest, ATextAndItsRicherFormsAreOneItem) {
  EXPECT_TRUE(write(richTextItem()));
  ASSERT_THAT(pasteboard.writes(), SizeIs(2));
  EXPECT_EQ(pasteboard.writes()[0].kind, Kind::clear);
  EXPECT_EQ(pasteboard.writes()[1].kind, Kind::item);
  EXPECT_EQ(pasteboard.writes()[1].item.string, "text");
  EXPECT_EQ(pasteboard.writes()[1].item.rtf, toBytes("{\\rtf1}"));
  EXPECT_EQ(pasteboard.writes()[1].item.html, toBytes("<p>"));
}

TEST_F(PasteboardWriteTest, ATextIsWrittenInTheFormsItHas) {
  EXPECT_TRUE(write(textItem("text")));
  EXPECT_EQ(pasteboard.writes().back().kind, Kind::item);
  EXPECT_THAT(pasteboard.currentTypes(), ElementsAre("text/plain;charset=utf-8"));
}

TEST_F(PasteboardWriteTest, APlainTextIsTheTextAlone) {
  EXPECT_TRUE(write(richTextItem(), true));
  EXPECT_EQ(pasteboard.writes().back().kind, Kind::string);
  EXPECT_THAT(pasteboard.currentTypes(), ElementsAre("text/plain;charset=utf-8"));
  EXPECT_EQ(pasteboard.contents().string, "text");
}

TEST_F(PasteboardWriteTest, ATextEntryWithoutTextLeavesThePasteboardEmpty) {
  auto item = textItem("");
  item.text.reset();
  for (const bool asPlainText : {false, true}) {
    pasteboard.offerText("what was there");
    EXPECT_FALSE(write(item, asPlainText));
    EXPECT_TRUE(pasteboard.isEmpty());
  }
}

TEST_F(PasteboardWriteTest, AnImageComesFromItsSealedFile) {
  const auto image = std::make_shared<FakeImage>(Size{640, 480}, "pixels");
  ASSERT_TRUE(history->captureImage(*image, {}));
  decoder.introduce(toBytes("pixels"), image);
  for (const bool asPlainText : {false, true}) {
    EXPECT_TRUE(write(history->items().front(), asPlainText));
    EXPECT_EQ(pasteboard.writes().back().image, image);
  }
}

TEST_F(PasteboardWriteTest, AnImageFromBeforeSealingIsUsedAsItIs) {
  const auto image = std::make_shared<FakeImage>(Size{640, 480}, "pixels");
  decoder.introduce(toBytes("plain pixels"), image);
  std::ofstream(history.assets() / "old.png") << "plain pixels";
  EXPECT_TRUE(write(imageItem("old.png", ContentFingerprint::data(bytesOf("plain pixels")))));
  EXPECT_EQ(pasteboard.writes().back().image, image);
}

TEST_F(PasteboardWriteTest, AnImageThatCannotBeReadOrDecodedLeavesThePasteboardEmpty) {
  const FakeImage image(Size{640, 480}, "pixels");
  ASSERT_TRUE(history->captureImage(image, {}));
  const auto item = history->items().front();
  pasteboard.offerText("what was there");
  EXPECT_FALSE(write(item)) << "not a picture";
  EXPECT_THAT(decoder.decoded(), ElementsAre(toBytes("pixels")));
  std::filesystem::remove(history.assets() / *item.assetFilename);
  EXPECT_FALSE(write(item)) << "no such file";
  auto nameless = item;
  nameless.assetFilename.reset();
  EXPECT_FALSE(write(nameless)) << "no name";
  EXPECT_THAT(decoder.decoded(), SizeIs(1));
  EXPECT_TRUE(pasteboard.isEmpty());
}

TEST_F(PasteboardWriteTest, FilesKeepTheirOrder) {
  const auto b = existingFile("b.txt");
  const auto a = existingFile("a.txt");
  for (const bool asPlainText : {false, true}) {
    EXPECT_TRUE(write(filesItem({b, a, directory.path().string()}), asPlainText));
    EXPECT_EQ(pasteboard.writes().back().kind, Kind::files);
    EXPECT_THAT(pasteboard.writes().back().files, ElementsAre(b, a, directory.path()));
  }
}

TEST_F(PasteboardWriteTest, OneMissingFileMakesTheWholeEntryUnavailable) {
  const auto item = filesItem({existingFile("a.txt"), (directory.path() / "gone").string()});
  pasteboard.offerText("what was there");
  controller->paste(item, false);
  dispatch().runQueued();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::unavailable));
  EXPECT_TRUE(pasteboard.isEmpty());
}

TEST_F(PasteboardWriteTest, TheDiskIsAskedWhereNobodyWaitsForIt) {
  const auto item = filesItem({existingFile("a.txt")});
  pasteboard.offerText("what was there");
  heedActivations();
  controller->paste(item, false);
  EXPECT_EQ(pasteboard.contents().string, "what was there") << "the disk has not answered yet";
  dispatch().runQueued();
  EXPECT_EQ(pasteboard.writes().back().kind, Kind::files);
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::pasted));
}

TEST_F(PasteboardWriteTest, ADiskThatDoesNotAnswerIsNotWaitedFor) {
  const auto gate = std::make_shared<Gate>();
  ThreadedDispatch threads;
  PasteController alone(*history, {pasteboard, workspace, input, threads,
                                   std::make_shared<UnansweringFiles>(gate), decoder});
  alone.onOutcome = [this](PasteOutcome outcome) { outcomes.push_back(outcome); };
  alone.paste(filesItem({"/dead/mount/a.txt"}), false);
  ASSERT_TRUE(gate->isReachedBy(1));
  threads.advance(FilePresence::patience - Seconds(0.01));
  EXPECT_THAT(outcomes, IsEmpty());
  threads.advance(Seconds(0.02));
  ASSERT_THAT(pasteboard.writes(), SizeIs(2));
  EXPECT_EQ(pasteboard.writes().back().kind, Kind::files) << "not seen to be gone";
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::clipboardOnlyNoTarget));
  gate->open();
  ASSERT_TRUE(gate->isPassedBy(1));
  threads.advance(Seconds(1));
  EXPECT_THAT(outcomes, SizeIs(1)) << "the late answer is nobody's";
}

TEST_F(PasteboardWriteTest, ANewerPasteDoesNotLetTheOlderOnesFilesBeWritten) {
  controller->paste(filesItem({existingFile("a.txt")}), false);
  pasteText("newer");
  dispatch().advance(Seconds(2));
  EXPECT_EQ(pasteboard.contents().string, "newer");
  EXPECT_THAT(outcomes, SizeIs(1));
}

TEST_F(PasteboardWriteTest, WhatIsPutBackIsWrittenLikeAPaste) {
  std::vector<bool> written;
  controller->restoreToPasteboard(richTextItem(),
                                  [&](bool success) { written.push_back(success); });
  EXPECT_EQ(pasteboard.writes().back().item.html, toBytes("<p>"));
  controller->restoreToPasteboard(filesItem({existingFile("a.txt")}),
                                  [&](bool success) { written.push_back(success); });
  dispatch().runQueued();
  EXPECT_EQ(pasteboard.writes().back().kind, Kind::files);
  EXPECT_THAT(written, ElementsAre(true, true));
  EXPECT_THAT(outcomes, IsEmpty()) << "nobody pasted";
}

TEST_F(PasteboardWriteTest, NothingIsPutBackOverWhatWasCopiedMeanwhile) {
  std::vector<bool> written;
  controller->restoreToPasteboard(filesItem({existingFile("a.txt")}),
                                  [&](bool success) { written.push_back(success); });
  pasteboard.offerText("copied meanwhile");
  dispatch().runQueued();
  EXPECT_EQ(pasteboard.contents().string, "copied meanwhile");
  EXPECT_THAT(written, ElementsAre(false));
}

TEST_F(PasteboardWriteTest, WhatCannotBePutBackChangesNothing) {
  std::vector<bool> written;
  pasteboard.offerText("what is there");
  controller->restoreToPasteboard(filesItem({(directory.path() / "gone").string()}),
                                  [&](bool success) { written.push_back(success); });
  dispatch().runQueued();
  const FakeImage image(Size{640, 480}, "pixels");
  ASSERT_TRUE(history->captureImage(image, {}));
  controller->restoreToPasteboard(history->items().front(),
                                  [&](bool success) { written.push_back(success); });
  EXPECT_EQ(pasteboard.contents().string, "what is there");
  EXPECT_THAT(written, ElementsAre(false, false)) << "no such file, no picture";
}

TEST_F(PasteboardWriteTest, AnEmptyListOfFilesLeavesThePasteboardEmpty) {
  pasteboard.offerText("what was there");
  EXPECT_FALSE(write(filesItemWithoutFiles()));
  EXPECT_TRUE(pasteboard.isEmpty());
}

TEST_F(PasteboardWriteTest, ARefusedWriteLeavesThePasteboardEmptyAndGoesNoFurther) {
  pasteboard.offerText("what was there");
  pasteboard.setRefusingWrites(true);
  pasteText();
  EXPECT_TRUE(pasteboard.isEmpty());
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::unavailable));
  EXPECT_EQ(ownWrites, 0);
  EXPECT_THAT(input.prompts(), IsEmpty());
  EXPECT_THAT(workspace.activations(), IsEmpty());
}

TEST_F(PasteboardWriteTest, APasteIsNotCapturedAsANewEntry) {
  FakeUserDefaults defaults;
  PrivacyPreferences privacy(defaults, dispatch());
  const FakeSessionLock lock;
  ClipboardWatcher watcher(*history, privacy, {pasteboard, workspace, dispatch(), lock});
  controller->onInternalPasteboardWrite = [&] { watcher.advanceLastChangeCount(); };
  watcher.start();
  heedActivations();
  pasteText("pasted");
  dispatch().advance(Seconds(2));
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::pasted));
  EXPECT_THAT(history.texts(), IsEmpty());
  pasteboard.offerText("copied");
  dispatch().runQueued();
  EXPECT_THAT(history.texts(), ElementsAre("copied"));
}

TEST_F(PasteboardWriteTest, TheWriteIsToldOfBeforeTheOutcome) {
  controller->onInternalPasteboardWrite = [this] {
    ++ownWrites;
    EXPECT_EQ(pasteboard.contents().string, "text");
    EXPECT_THAT(outcomes, IsEmpty());
  };
  controller->setTargetApplication(std::nullopt);
  pasteText();
  EXPECT_EQ(ownWrites, 1);
  EXPECT_THAT(outcomes, SizeIs(1));
}

}  // namespace
}  // namespace vantorel
