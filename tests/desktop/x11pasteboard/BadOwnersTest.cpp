// SPDX-License-Identifier: MIT
#include "desktop/x11pasteboard/PasteboardFixture.h"

namespace vantorel {
namespace {

using testing::IsEmpty;

/// Owners that do everything but what they should. Each read ends, and ends as "nothing there".
class X11PasteboardBadOwner : public PasteboardFixture {
 protected:
  X11PasteboardBadOwner() { open({.patience = std::chrono::milliseconds(300)}); }

  [[nodiscard]] Milliseconds timeOfReading(Text& text) {
    const auto start = std::chrono::steady_clock::now();
    text = string();
    return std::chrono::steady_clock::now() - start;
  }

  static ScriptedForm behaving(Manner manner) {
    ScriptedForm form;
    form.manner = manner;
    form.bytes = bytes("text");
    return form;
  }
  static ScriptedForm inPieces(std::size_t size) {
    ScriptedForm form;
    form.manner = Manner::incremental;
    form.bytes = pattern(size);
    return form;
  }

  ScriptedOwner owner{server->display()};
};

TEST_F(X11PasteboardBadOwner, OneThatNeverAnswersHasNothing) {
  owner.offer("TARGETS", behaving(Manner::stay_silent));
  copy(owner);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(types());
  const Milliseconds took = std::chrono::steady_clock::now() - start;
  EXPECT_GE(took.count(), 290);
  // It has been asked once; nobody waits for it a second time.
  EXPECT_FALSE(string());
  EXPECT_EQ(image(), nullptr);
  EXPECT_EQ(owner.requests().size(), 1U);
}

TEST_F(X11PasteboardBadOwner, OneThatAnswersTargetsOnlyHasNoText) {
  owner.offer("UTF8_STRING", behaving(Manner::stay_silent));
  owner.offer("STRING", "never asked for");
  copy(owner);
  EXPECT_TRUE(types());
  EXPECT_FALSE(string());
  // An owner that has stopped answering is not asked for every other form in turn.
  EXPECT_THAT(owner.requests(), testing::ElementsAre("TARGETS", "UTF8_STRING"));
}

TEST_F(X11PasteboardBadOwner, OneThatRefusesTargetsHasNothing) {
  owner.offer("TARGETS", behaving(Manner::refuse));
  owner.offer("UTF8_STRING", "text");
  copy(owner);
  EXPECT_FALSE(types());
  EXPECT_FALSE(string());
}

TEST_F(X11PasteboardBadOwner, OneThatRefusesAFormIsAskedForTheNext) {
  owner.offer("UTF8_STRING", behaving(Manner::refuse));
  owner.offer("text/plain", behaving(Manner::answer_without_property));
  owner.offer("STRING", "at last");
  copy(owner);
  EXPECT_EQ(string(), "at last");
}

TEST_F(X11PasteboardBadOwner, OneThatRefusesEverythingHasNothing) {
  for (const char* target : {"UTF8_STRING", "text/html", "text/uri-list", "image/png"}) {
    owner.offer(target, behaving(Manner::refuse));
  }
  copy(owner);
  EXPECT_FALSE(string());
  EXPECT_FALSE(data(PasteboardDataType::html));
  EXPECT_THAT(files(), IsEmpty());
  EXPECT_EQ(image(), nullptr);
}

TEST_F(X11PasteboardBadOwner, OneThatAnswersTargetsWithTextHasNothing) {
  ScriptedForm text = behaving(Manner::give);
  text.type = "STRING";
  owner.offer("TARGETS", text);
  owner.offer("UTF8_STRING", "text");
  copy(owner);
  EXPECT_FALSE(types());
  EXPECT_FALSE(string());
}

TEST_F(X11PasteboardBadOwner, OneThatAnswersTargetsWithNumbersHasNothing) {
  ScriptedForm numbers = behaving(Manner::give);
  numbers.type = "INTEGER";
  numbers.format = 32;
  owner.offer("TARGETS", numbers);
  copy(owner);
  EXPECT_FALSE(types());
}

TEST_F(X11PasteboardBadOwner, OneThatAnswersTargetsWithNothingOffersNothing) {
  ScriptedForm none;
  none.type = "ATOM";
  none.format = 32;
  owner.offer("TARGETS", none);
  copy(owner);
  EXPECT_THAT(types(), testing::Optional(IsEmpty()));
  EXPECT_FALSE(string());
}

TEST_F(X11PasteboardBadOwner, AtomsThatDoNotExistAreNoTargets) {
  ScriptedForm wild;
  wild.type = "ATOM";
  wild.format = 32;
  wild.bytes = bytes(std::string("\x00\x00\x00\x00\xFF\xFF\xFF\x1F\x1F\x00\x00\x00", 12));
  owner.offer("TARGETS", wild);
  owner.offer("STRING", "text");
  copy(owner);
  EXPECT_THAT(types(), testing::Optional(testing::ElementsAre("STRING")));
}

TEST_F(X11PasteboardBadOwner, AListOfTargetsWithoutEndIsNotBelieved) {
  ScriptedForm endless;
  endless.type = "ATOM";
  endless.format = 32;
  endless.bytes = Bytes(1'000'000, std::byte{0});
  owner.offer("TARGETS", endless);
  copy(owner);
  EXPECT_FALSE(types());
}

TEST_F(X11PasteboardBadOwner, OneThatAnswersTextAsNumbersIsAskedForTheNextForm) {
  ScriptedForm numbers = behaving(Manner::give);
  numbers.format = 32;
  owner.offer("UTF8_STRING", numbers);
  owner.offer("STRING", "in letters");
  copy(owner);
  EXPECT_EQ(string(), "in letters");
}

TEST_F(X11PasteboardBadOwner, OneThatStallsWithinATransferHasNothing) {
  ScriptedForm stalling = inPieces(1'000'000);
  stalling.piecesBeforeStalling = 3;
  owner.offer("UTF8_STRING", stalling);
  copy(owner);
  Text text;
  const auto took = timeOfReading(text);
  EXPECT_FALSE(text);
  EXPECT_GE(took.count(), 290);
  EXPECT_LT(took.count(), 5000);
}

TEST_F(X11PasteboardBadOwner, OneThatClaimsFourGigabytesAndSendsFourBytesIsReadAsItIs) {
  ScriptedForm lying = behaving(Manner::incremental);
  lying.claimedBytes = 0xFFFFFFFFU;
  owner.offer("UTF8_STRING", lying);
  copy(owner);
  EXPECT_EQ(string(), "text");
}

TEST_F(X11PasteboardBadOwner, OneThatSendsMoreThanAnyHistoryHoldsIsCutOff) {
  ScriptedForm endless = inPieces(70'000'000);
  endless.pieceBytes = 1'000'000;
  endless.claimedBytes = 1;
  owner.offer("UTF8_STRING", endless);
  owner.offer("STRING", "never asked for");
  owner.offer("image/png", "a picture of the text");
  copy(owner);
  EXPECT_FALSE(string());
  EXPECT_EQ(image(), nullptr);
  EXPECT_THAT(owner.requests(), testing::ElementsAre("TARGETS", "UTF8_STRING"));
}

TEST_F(X11PasteboardBadOwner, OneThatDiesWithinATransferEndsTheReadAtOnce) {
  ScriptedForm dying = inPieces(1'000'000);
  dying.piecesBeforeDying = 3;
  owner.offer("UTF8_STRING", dying);
  copy(owner);
  Text text;
  const auto took = timeOfReading(text);
  EXPECT_FALSE(text);
  EXPECT_LT(took.count(), 290) << "waited for an owner that was known to be gone";
}

TEST_F(X11PasteboardBadOwner, OneThatDiesBeforeAnsweringEndsTheReadAtOnce) {
  owner.offer("UTF8_STRING", behaving(Manner::stay_silent));
  copy(owner);
  std::optional<Text> answer;
  const auto start = std::chrono::steady_clock::now();
  pasteboard->readString(now(), [&](Text text) { answer = std::move(text); });
  ASSERT_TRUE(owner.waitForRequest("UTF8_STRING"));
  owner.die();
  ASSERT_TRUE(loop.runUntil([&] { return answer.has_value(); }));
  EXPECT_FALSE(*answer);
  EXPECT_LT(Milliseconds(std::chrono::steady_clock::now() - start).count(), 290);
}

TEST_F(X11PasteboardBadOwner, OneThatHasDiedHasNothing) {
  owner.offer("UTF8_STRING", "text");
  copy(owner);
  EXPECT_EQ(string(), "text");
  bool exited = false;
  pasteboard->setOwnerExitHandler([&](auto) { exited = true; });
  owner.die();
  ASSERT_TRUE(loop.runUntil([&] { return exited; }));
  EXPECT_FALSE(string());
  EXPECT_THAT(types(), testing::Optional(IsEmpty()));
}

TEST_F(X11PasteboardBadOwner, ALateAnswerDoesNotLandInTheNextRead) {
  ScriptedForm late;
  late.bytes = bytes("late");
  late.pause = std::chrono::milliseconds(400);
  owner.offer("UTF8_STRING", late);
  copy(owner);
  EXPECT_FALSE(string()) << "given up before the answer";
  // The late one arrives while the read of the next copy waits for its own.
  ScriptedForm slow;
  slow.bytes = bytes("slow");
  slow.pause = std::chrono::milliseconds(200);
  owner.offer("UTF8_STRING", slow);
  copy(owner);
  EXPECT_EQ(string(), "slow");
}

TEST_F(X11PasteboardBadOwner, OthersAreReadWhileTheMainThreadIsElsewhere) {
  owner.offer("UTF8_STRING", behaving(Manner::stay_silent));
  owner.offer("text/html", "<b>");
  copy(owner);
  std::optional<Text> silent;
  std::optional<Data> html;
  pasteboard->readString(now(), [&](Text value) { silent = std::move(value); });
  pasteboard->readData(now(), PasteboardDataType::html, [&](Data value) {
    html = std::move(value);
    EXPECT_FALSE(silent) << "a silent form held up another";
  });
  ASSERT_TRUE(loop.runUntil([&] { return silent && html; }));
  EXPECT_EQ(*html, bytes("<b>"));
}

}  // namespace
}  // namespace vantorel
