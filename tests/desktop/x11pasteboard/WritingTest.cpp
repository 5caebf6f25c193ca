// SPDX-License-Identifier: MIT
#include <thread>

#include "desktop/x11pasteboard/PasteboardFixture.h"

namespace vantorel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class X11PasteboardWriting : public PasteboardFixture {
 protected:
  [[nodiscard]] std::vector<std::string> offered() {
    const auto targets = program.get("TARGETS");
    if (!targets || targets->type != XCB_ATOM_ATOM) return {};
    return program.connection().atomNames(targets->values32());
  }
  [[nodiscard]] std::string get(const std::string& target) { return textIn(program.get(target)); }
  [[nodiscard]] std::string typeOf(const std::string& target) {
    const auto property = program.get(target);
    return property ? program.connection().atomName(property->type).value_or("?") : "(nothing)";
  }

  /// Lets the loop turn, so that time passes while nothing is queued.
  [[nodiscard]] bool forgotten(const std::weak_ptr<const Bytes>& data) {
    if (!tick) tick = loop.every(Seconds(0.01), [] {});
    return data.expired();
  }

  std::unique_ptr<Timer> tick;
  Requestor program{server->display()};
};

TEST_F(X11PasteboardWriting, APlainTextIsServedInEveryTextForm) {
  ASSERT_TRUE(pasteboard->writeString("שלום é"));
  for (const char* target : {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "TEXT"}) {
    EXPECT_EQ(get(target), "שלום é") << target;
  }
  EXPECT_EQ(get("STRING"), "???? \xE9");
  EXPECT_EQ(typeOf("STRING"), "STRING");
  EXPECT_EQ(typeOf("TEXT"), "UTF8_STRING");
  EXPECT_EQ(typeOf("text/plain"), "text/plain");
  EXPECT_THAT(offered(), Not(Contains("text/html")));
  EXPECT_THAT(offered(), Not(Contains("text/rtf")));
}

TEST_F(X11PasteboardWriting, AnItemIsServedWithItsRichForms) {
  ASSERT_TRUE(pasteboard->writeItem({"text", bytes("{\\rtf1}"), bytes("<b>text</b>")}));
  EXPECT_EQ(get("text/rtf"), "{\\rtf1}");
  EXPECT_EQ(get("application/rtf"), "{\\rtf1}");
  EXPECT_EQ(get("text/richtext"), "{\\rtf1}");
  EXPECT_EQ(get("text/html"), "<b>text</b>");
  EXPECT_EQ(get("UTF8_STRING"), "text");
}

TEST_F(X11PasteboardWriting, NoMarkerOfItsOwnIsAdded) {
  ASSERT_TRUE(pasteboard->writeString("text"));
  EXPECT_THAT(offered(),
              testing::UnorderedElementsAre("TARGETS", "TIMESTAMP", "MULTIPLE", "SAVE_TARGETS",
                                            "UTF8_STRING", "text/plain;charset=utf-8", "text/plain",
                                            "TEXT", "STRING", "COMPOUND_TEXT"));
}

TEST_F(X11PasteboardWriting, FilesAreServedAsBothListsAndAsText) {
  ASSERT_TRUE(pasteboard->writeFileURLs({"/tmp/a b", "/home/u/é"}));
  EXPECT_EQ(get("text/uri-list"), "file:///tmp/a%20b\r\nfile:///home/u/%C3%A9\r\n");
  EXPECT_EQ(get("x-special/gnome-copied-files"), "copy\nfile:///tmp/a%20b\nfile:///home/u/%C3%A9");
  EXPECT_EQ(get("x-special/mate-copied-files"), get("x-special/gnome-copied-files"));
  EXPECT_EQ(get("UTF8_STRING"), "/tmp/a b\n/home/u/é");
}

TEST_F(X11PasteboardWriting, RefusesNoFilesAndRelativeFilesAndNoImage) {
  const auto before = now();
  EXPECT_FALSE(pasteboard->writeFileURLs({}));
  EXPECT_FALSE(pasteboard->writeFileURLs({"/a", "b"}));
  EXPECT_FALSE(pasteboard->writeImage(nullptr));
  EXPECT_EQ(now(), before);
}

TEST_F(X11PasteboardWriting, AnImageIsServedAsPngAndEncodedOnlyWhenAskedFor) {
  const auto made = std::make_shared<MadeImage>(pattern(1'000'000), bytes("jpeg"));
  ASSERT_TRUE(pasteboard->writeImage(made));
  EXPECT_THAT(offered(), Contains("image/png"));
  EXPECT_EQ(made->pngAsked, 0);
  const auto png = program.get("image/png");
  ASSERT_TRUE(png);
  EXPECT_TRUE(png->bytes == pattern(1'000'000));
  EXPECT_FALSE(program.get("UTF8_STRING"));
}

TEST_F(X11PasteboardWriting, AnImageThatCannotBeEncodedIsRefused) {
  class Unreadable : public Image {
   public:
    [[nodiscard]] Size size() const override { return {1, 1}; }
    [[nodiscard]] std::shared_ptr<const Bytes> pngData() const override { return nullptr; }
    [[nodiscard]] std::shared_ptr<const Bytes> jpegData(double) const override { return nullptr; }
  };
  ASSERT_TRUE(pasteboard->writeImage(std::make_shared<Unreadable>()));
  EXPECT_FALSE(program.get("image/png"));
}

TEST_F(X11PasteboardWriting, ASlowEncodingHoldsUpNobodyElse) {
  class Slow : public Image {
   public:
    [[nodiscard]] Size size() const override { return {1, 1}; }
    [[nodiscard]] std::shared_ptr<const Bytes> pngData() const override {
      std::unique_lock lock(mutex);
      condition.wait_for(lock, std::chrono::seconds(30), [this] { return released; });
      return std::make_shared<const Bytes>(bytes("png"));
    }
    [[nodiscard]] std::shared_ptr<const Bytes> jpegData(double) const override { return nullptr; }
    void release() {
      const std::lock_guard lock(mutex);
      released = true;
      condition.notify_all();
    }
    mutable std::mutex mutex;
    mutable std::condition_variable condition;
    bool released = false;
  };
  const auto slow = std::make_shared<Slow>();
  ASSERT_TRUE(pasteboard->writeImage(slow));
  program.ask("image/png");
  Requestor other(server->display());
  EXPECT_TRUE(other.get("TARGETS"));
  slow->release();
  ASSERT_TRUE(program.answered());
  EXPECT_EQ(textIn(program.take()), "png");
}

TEST_F(X11PasteboardWriting, TellsWhenItTookTheSelection) {
  ASSERT_TRUE(pasteboard->writeString("text"));
  const auto timestamp = program.get("TIMESTAMP");
  ASSERT_TRUE(timestamp);
  EXPECT_EQ(timestamp->type, xcb_atom_t{XCB_ATOM_INTEGER});
  ASSERT_EQ(timestamp->values32().size(), 1U);
  const auto time = timestamp->values32().front();
  EXPECT_NE(time, xcb_timestamp_t{XCB_CURRENT_TIME});
  EXPECT_TRUE(program.get("UTF8_STRING", "CLIPBOARD", time));
  EXPECT_FALSE(program.get("UTF8_STRING", "CLIPBOARD", time - 1)) << "it was not ours then";
}

TEST_F(X11PasteboardWriting, AnswersSeveralTargetsInOneRequest) {
  ASSERT_TRUE(pasteboard->writeItem({"text", std::nullopt, bytes("<b>")}));
  const auto parts = program.getMultiple({"UTF8_STRING", "image/png", "text/html", "TARGETS"});
  EXPECT_EQ(textIn(parts[0]), "text");
  EXPECT_FALSE(parts[1]) << "not on offer";
  EXPECT_EQ(textIn(parts[2]), "<b>");
  EXPECT_TRUE(parts[3]);
}

TEST_F(X11PasteboardWriting, SeveralTargetsMayIncludeASlowOne) {
  ASSERT_TRUE(pasteboard->writeImage(std::make_shared<MadeImage>(bytes("png"), Bytes())));
  const auto parts = program.getMultiple({"image/png", "TARGETS"});
  EXPECT_EQ(textIn(parts[0]), "png");
  EXPECT_TRUE(parts[1]);
}

TEST_F(X11PasteboardWriting, RefusesSeveralTargetsThatAreNotNamed) {
  ASSERT_TRUE(pasteboard->writeString("text"));
  program.ask("MULTIPLE");  // without the list
  EXPECT_TRUE(program.answered());
  EXPECT_EQ(get("UTF8_STRING"), "text");
}

TEST_F(X11PasteboardWriting, ServesTwentyMegabytesInPieces) {
  const auto large = pattern(20'000'000);
  ASSERT_TRUE(pasteboard->writeString(std::string(textOf(large))));
  const auto start = std::chrono::steady_clock::now();
  const auto property = program.get("UTF8_STRING");
  RecordProperty("milliseconds",
                 std::to_string(Milliseconds(std::chrono::steady_clock::now() - start).count()));
  ASSERT_TRUE(property);
  EXPECT_TRUE(property->bytes == large);
}

TEST_F(X11PasteboardWriting, ServesTwoRequestorsAtOnce) {
  const auto large = pattern(3'000'000);
  ASSERT_TRUE(pasteboard->writeString(std::string(textOf(large))));
  Requestor other(server->display());
  program.ask("UTF8_STRING");
  other.ask("UTF8_STRING");
  Bytes first;
  Bytes second;
  ASSERT_TRUE(program.answered());
  ASSERT_TRUE(other.answered());
  ASSERT_TRUE(program.take());  // each is told that pieces follow
  ASSERT_TRUE(other.take());
  // In turns, so that both conversations are under way at every moment.
  for (bool firstEnded = false, secondEnded = false; !firstEnded || !secondEnded;) {
    if (!firstEnded) {
      const auto piece = program.take();
      ASSERT_TRUE(piece);
      firstEnded = piece->bytes.empty();
      first.insert(first.end(), piece->bytes.begin(), piece->bytes.end());
    }
    if (!secondEnded) {
      const auto piece = other.take();
      ASSERT_TRUE(piece);
      secondEnded = piece->bytes.empty();
      second.insert(second.end(), piece->bytes.begin(), piece->bytes.end());
    }
  }
  EXPECT_TRUE(first == large);
  EXPECT_TRUE(second == large);
}

TEST_F(X11PasteboardWriting, ARequestorThatStopsTakingHoldsUpNobody) {
  const auto large = pattern(3'000'000);
  ASSERT_TRUE(pasteboard->writeString(std::string(textOf(large))));
  Requestor stalled(server->display());
  stalled.ask("UTF8_STRING");
  ASSERT_TRUE(stalled.answered());
  ASSERT_TRUE(stalled.take());
  ASSERT_TRUE(stalled.take());
  const auto property = program.get("UTF8_STRING");
  ASSERT_TRUE(property);
  EXPECT_TRUE(property->bytes == large);
}

TEST_F(X11PasteboardWriting, ARequestorThatDiesHoldsUpNobody) {
  const auto large = pattern(3'000'000);
  ASSERT_TRUE(pasteboard->writeString(std::string(textOf(large))));
  {
    Requestor dying(server->display());
    dying.ask("UTF8_STRING");
    ASSERT_TRUE(dying.answered());
    ASSERT_TRUE(dying.take());
  }
  const auto property = program.get("UTF8_STRING");
  ASSERT_TRUE(property);
  EXPECT_TRUE(property->bytes == large);
}

TEST_F(X11PasteboardWriting, ARequestorThatDiesIsForgottenAtOnce) {
  auto image = std::make_shared<const MadeImage>(pattern(3'000'000), Bytes());
  const std::weak_ptr<const Image> kept = image;
  ASSERT_TRUE(pasteboard->writeImage(std::move(image)));
  auto dying = std::make_unique<Requestor>(server->display());
  dying->ask("image/png");
  ASSERT_TRUE(dying->answered());
  ASSERT_TRUE(dying->take());
  const std::weak_ptr<const Bytes> png = kept.lock()->pngData();
  ASSERT_TRUE(pasteboard->writeString("new"));
  EXPECT_FALSE(png.expired()) << "still being taken";
  dying.reset();
  EXPECT_TRUE(loop.runUntil([&] { return forgotten(png); }, IncrementalSender::stallLimit / 2));
  EXPECT_TRUE(kept.expired());
}

TEST_F(X11PasteboardWriting, ARequestorThatStopsTakingIsForgottenInTheEnd) {
  auto image = std::make_shared<const MadeImage>(pattern(3'000'000), Bytes());
  const std::weak_ptr<const Image> kept = image;
  ASSERT_TRUE(pasteboard->writeImage(std::move(image)));
  program.ask("image/png");
  ASSERT_TRUE(program.answered());
  ASSERT_TRUE(program.take());
  const std::weak_ptr<const Bytes> png = kept.lock()->pngData();
  ASSERT_TRUE(pasteboard->writeString("new"));
  EXPECT_TRUE(loop.runUntil([&] { return forgotten(png); }, IncrementalSender::stallLimit * 3));
}

TEST_F(X11PasteboardWriting, ATransferUnderWayEndsWithTheOldContents) {
  const auto large = pattern(2'000'000);
  ASSERT_TRUE(pasteboard->writeString(std::string(textOf(large))));
  program.ask("UTF8_STRING");
  ASSERT_TRUE(program.answered());
  ASSERT_TRUE(program.take());
  ASSERT_TRUE(pasteboard->writeString("new"));
  Bytes taken;
  for (;;) {
    const auto piece = program.take();
    ASSERT_TRUE(piece);
    if (piece->bytes.empty()) break;
    taken.insert(taken.end(), piece->bytes.begin(), piece->bytes.end());
  }
  EXPECT_TRUE(taken == large);
  EXPECT_EQ(get("UTF8_STRING"), "new");
}

TEST_F(X11PasteboardWriting, ServesWhileTheMainThreadIsBusy) {
  ASSERT_TRUE(pasteboard->writeString("text"));
  // This is the main thread, and it runs no queue while the other program asks.
  EXPECT_EQ(get("UTF8_STRING"), "text");
}

TEST_F(X11PasteboardWriting, OwnContentsAreReadWithoutLeavingTheProcess) {
  ASSERT_TRUE(pasteboard->writeItem({"text", bytes("{\\rtf1}"), std::nullopt}));
  EXPECT_EQ(string(), "text");
  EXPECT_EQ(data(PasteboardDataType::rtf), bytes("{\\rtf1}"));
  EXPECT_FALSE(data(PasteboardDataType::html));
  EXPECT_THAT(types(), testing::Optional(Contains("UTF8_STRING")));
  const auto made = std::make_shared<MadeImage>(bytes("png"), Bytes());
  ASSERT_TRUE(pasteboard->writeImage(made));
  EXPECT_EQ(image(), made);
  EXPECT_FALSE(string());
  ASSERT_TRUE(pasteboard->writeFileURLs({"/a", "/b"}));
  EXPECT_THAT(files(), ElementsAre("/a", "/b"));
  EXPECT_THAT(decoder.decoded(), IsEmpty());
}

TEST_F(X11PasteboardWriting, ClearingAndWritingIsOneChangeToOtherPrograms) {
  MainLoop otherLoop;
  FakeImageDecoder otherDecoder;
  const auto other = X11Pasteboard::open({otherLoop, otherDecoder}, server->display());
  ASSERT_TRUE(pasteboard->writeString("old"));
  ASSERT_TRUE(otherLoop.runUntil([&] {
    otherLoop.runQueued();
    return other->changeCount() == 2;
  }));
  pasteboard->clearContents();
  pasteboard->clearContents();
  ASSERT_TRUE(pasteboard->writeString("new"));
  loop.runQueued();
  ASSERT_TRUE(pasteboard->writeString("newest"));
  ASSERT_TRUE(otherLoop.runUntil([&] {
    otherLoop.runQueued();
    return other->changeCount() >= 4;
  }));
  EXPECT_EQ(other->changeCount(), 4);
}

TEST_F(X11PasteboardWriting, ClearedContentsAreEmptyToOtherPrograms) {
  ASSERT_TRUE(pasteboard->writeString("old"));
  pasteboard->clearContents();
  EXPECT_EQ(get("UTF8_STRING"), "old") << "shown before this turn of the main thread ended";
  loop.runQueued();
  // Passes through the thread behind the clearing.
  EXPECT_FALSE(string());
  EXPECT_FALSE(program.get("UTF8_STRING"));
  EXPECT_THAT(types(), testing::Optional(IsEmpty()));
}

TEST_F(X11PasteboardWriting, ClearingTakesAnotherProgramsContentsAway) {
  ScriptedOwner owner(server->display());
  owner.offer("UTF8_STRING", "theirs");
  copy(owner);
  pasteboard->clearContents();
  loop.runQueued();
  EXPECT_TRUE(owner.waitForLoss());
  EXPECT_FALSE(program.get("UTF8_STRING"));
}

TEST_F(X11PasteboardWriting, ACopyRightAfterAClearIsNotClearedAway) {
  ScriptedOwner owner(server->display());
  owner.offer("UTF8_STRING", "theirs");
  pasteboard->clearContents();
  const auto cleared = now();
  owner.own();
  while (now() == cleared) std::this_thread::yield();
  loop.runQueued();
  EXPECT_EQ(string(), "theirs");
  EXPECT_EQ(get("UTF8_STRING"), "theirs");
}

TEST_F(X11PasteboardWriting, OffersNothingOnceAnotherProgramHasTheClipboard) {
  ASSERT_TRUE(pasteboard->writeString("ours"));
  ScriptedOwner owner(server->display());
  owner.offer("UTF8_STRING", "theirs");
  copy(owner);
  EXPECT_EQ(get("UTF8_STRING"), "theirs");
  EXPECT_FALSE(pasteboard->alsoOfferPrimary());
}

TEST_F(X11PasteboardWriting, PrimaryIsOwnedOnlyWhenAskedFor) {
  ASSERT_TRUE(pasteboard->writeString("text"));
  EXPECT_FALSE(program.get("UTF8_STRING", "PRIMARY"));
  const auto change = now();
  ASSERT_TRUE(pasteboard->alsoOfferPrimary());
  EXPECT_EQ(textIn(program.get("UTF8_STRING", "PRIMARY")), "text");
  EXPECT_EQ(get("UTF8_STRING"), "text");
  EXPECT_EQ(now(), change);
  ScriptedOwner selecting(server->display(), "PRIMARY");
  selecting.offer("UTF8_STRING", "selected");
  selecting.own();
  EXPECT_EQ(textIn(program.get("UTF8_STRING", "PRIMARY")), "selected");
  EXPECT_EQ(get("UTF8_STRING"), "text");
}

TEST_F(X11PasteboardWriting, WritesInQuickSuccessionAllSucceedAndTheLastOneStands) {
  for (int i = 0; i < 200; ++i) ASSERT_TRUE(pasteboard->writeString(std::to_string(i)));
  EXPECT_EQ(get("UTF8_STRING"), "199");
}

TEST_F(X11PasteboardWriting, WritesAndOthersCopiesInterleaveWithoutConfusion) {
  ScriptedOwner owner(server->display());
  owner.offer("UTF8_STRING", "theirs");
  for (int i = 0; i < 50; ++i) {
    const auto before = now();
    owner.own();
    const bool written = pasteboard->writeString("ours");
    EXPECT_TRUE(written);
    EXPECT_EQ(now(), before + 2);
    EXPECT_EQ(string(), "ours");
    EXPECT_EQ(get("UTF8_STRING"), "ours");
  }
}

TEST_F(X11PasteboardWriting, WhoeverIsQuickerIsTheOneWhoseContentsAreServed) {
  ScriptedOwner owner(server->display());
  owner.offer("UTF8_STRING", "theirs");
  for (int i = 0; i < 300; ++i) {
    std::thread rival([&] { owner.tryToOwn(); });
    (void)pasteboard->writeString("ours");
    rival.join();
    const auto served = get("UTF8_STRING");
    ASSERT_THAT(served, testing::AnyOf("ours", "theirs"));
    // Each answer is waited for; one that a change overtook was nothing, and is asked for again.
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (string() != served) ASSERT_LT(std::chrono::steady_clock::now(), limit);
  }
}

}  // namespace
}  // namespace vantorel
