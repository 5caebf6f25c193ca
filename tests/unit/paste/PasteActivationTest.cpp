// SPDX-License-Identifier: MIT
// How a paste finds its target in front, or does not.
#include <gmock/gmock.h>

#include "unit/paste/PasteScene.h"

namespace vantorel {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using PasteActivationTest = PasteScene;

TEST_F(PasteActivationTest, WithoutTrustTheClipIsOnThePasteboardAndNothingIsActivated) {
  input.setTrusted(false);
  pasteText();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::clipboardOnlyNeedsAccessibility));
  EXPECT_EQ(pasteboard.contents().string, "text");
  EXPECT_EQ(ownWrites, 1);
  EXPECT_THAT(workspace.activations(), IsEmpty());
  EXPECT_THAT(input.prompts(), ElementsAre(TrustPrompt::ask));
}

TEST_F(PasteActivationTest, WithoutATargetTheClipIsOnThePasteboard) {
  controller->setTargetApplication(std::nullopt);
  pasteText();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::clipboardOnlyNoTarget));
  EXPECT_EQ(pasteboard.contents().string, "text");
  EXPECT_THAT(workspace.activations(), IsEmpty());
}

TEST_F(PasteActivationTest, PressesTheChordInTheTarget) {
  heedActivations();
  pasteText();
  struct Expected {
    KeyCode keyCode;
    KeyDirection direction;
    EventFlags flags;
  };
  const std::vector<Expected> expected = {{55, KeyDirection::down, 0x100000},
                                          {9, KeyDirection::down, 0x100000},
                                          {9, KeyDirection::up, 0x100000},
                                          {55, KeyDirection::up, 0}};
  ASSERT_EQ(input.posted().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(input.posted()[i].pid, editor.processIdentifier);
    EXPECT_EQ(input.posted()[i].event.keyCode, expected[i].keyCode);
    EXPECT_EQ(input.posted()[i].event.direction, expected[i].direction);
    EXPECT_EQ(input.posted()[i].event.flags, expected[i].flags);
  }
}

TEST_F(PasteActivationTest, SkipsAnEventThatCannotBeCreated) {
  input.makeImpossible(55, KeyDirection::down);
  heedActivations();
  pasteText();
  ASSERT_THAT(input.posted(), SizeIs(3));
  EXPECT_EQ(input.posted()[0].event.keyCode, 9U);
  EXPECT_EQ(input.posted()[0].event.flags, 0x100000U);
  EXPECT_EQ(input.posted()[2].event.keyCode, 55U);
  EXPECT_EQ(input.posted()[2].event.flags, 0U);
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::pasted));
}

TEST_F(PasteActivationTest, SaysThatTheUserMustPasteWhenNoKeyCanBePressedAtAll) {
  input.setHasEventSource(false);
  heedActivations();
  pasteText();
  EXPECT_THAT(input.posted(), IsEmpty());
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::clipboardOnlyNoTarget));
}

TEST_F(PasteActivationTest, NeedsNobodyToListen) {
  PasteController alone(*history, services());
  alone.setTargetApplication(editor);
  workspace.setFront(editor.processIdentifier);
  alone.paste(textItem("text"), false);
  EXPECT_THAT(input.posted(), SizeIs(4));
}

TEST_F(PasteActivationTest, PastesAtOnceIntoATargetThatComesAtOnce) {
  heedActivations();
  pasteText();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::pasted));
  EXPECT_THAT(workspace.activations(), ElementsAre(10));
  dispatch().advance(Seconds(2));
  EXPECT_THAT(outcomes, SizeIs(1));
  EXPECT_THAT(input.posted(), SizeIs(4));
}

TEST_F(PasteActivationTest, AnAnnouncementIsNotWaitedForUntilTheNextCheck) {
  pasteText();
  EXPECT_THAT(outcomes, IsEmpty());
  workspace.bringToFront(editor.processIdentifier);
  dispatch().runQueued();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::pasted));
  EXPECT_EQ(workspace.observerCount(), 0U);
  dispatch().advance(Seconds(2));
  EXPECT_THAT(outcomes, SizeIs(1));
}

TEST_F(PasteActivationTest, PastesAtTheThirdCheckWhenNothingIsAnnounced) {
  pasteText();
  dispatch().advance(Seconds(0.06));  // two checks so far
  workspace.setFront(editor.processIdentifier);
  EXPECT_THAT(outcomes, IsEmpty());
  dispatch().advance(Seconds(0.04));
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::pasted));
  EXPECT_THAT(workspace.activations(), SizeIs(3));  // at first, and after two vain checks
  EXPECT_EQ(workspace.frontmostQueries(), 3);
}

TEST_F(PasteActivationTest, GivesUpAfter24Checks) {
  pasteText();
  dispatch().advance(Seconds(1.19));
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_EQ(workspace.frontmostQueries(), 24);
  dispatch().advance(Seconds(0.02));
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::clipboardOnlyNoTarget));
  EXPECT_EQ(workspace.frontmostQueries(), 24);
  EXPECT_THAT(workspace.activations(), SizeIs(25));
  EXPECT_THAT(workspace.activations(), Each(10));
  EXPECT_THAT(input.posted(), IsEmpty());
  EXPECT_EQ(workspace.observerCount(), 0U);
}

TEST_F(PasteActivationTest, AnnouncementsOfOthersUseUpNoCheck) {
  workspace.launch(20, "com.acme.browser", "Browser");
  pasteText();
  for (int i = 0; i < 100; ++i) workspace.bringToFront(20);
  dispatch().runQueued();
  EXPECT_EQ(workspace.frontmostQueries(), 1);
  dispatch().advance(Seconds(1.1));
  EXPECT_THAT(outcomes, IsEmpty());
}

TEST_F(PasteActivationTest, AnAnnouncementThatIsNoLongerTruePressesNothing) {
  workspace.launch(20, "com.acme.browser", "Browser");
  pasteText();
  workspace.bringToFront(editor.processIdentifier);
  workspace.setFront(20);
  dispatch().runQueued();
  EXPECT_THAT(input.posted(), IsEmpty());
  workspace.setFront(editor.processIdentifier);
  dispatch().advance(Seconds(0.05));
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::pasted));
}

TEST_F(PasteActivationTest, ANewerPasteOvertakesTheWait) {
  pasteText("older");
  dispatch().advance(Seconds(0.5));
  pasteText("newer");
  dispatch().advance(Seconds(0.8));  // the older one would have given up by now
  EXPECT_THAT(outcomes, IsEmpty());
  workspace.bringToFront(editor.processIdentifier);
  dispatch().advance(Seconds(2));
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::pasted));
  EXPECT_THAT(input.posted(), SizeIs(4));
  EXPECT_EQ(pasteboard.contents().string, "newer");
}

TEST_F(PasteActivationTest, ANewerPasteThatFailsEndsTheWaitToo) {
  pasteText("older");
  controller->paste(filesItemWithoutFiles(), false);
  workspace.bringToFront(editor.processIdentifier);
  dispatch().advance(Seconds(2));
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::unavailable));
  EXPECT_THAT(input.posted(), IsEmpty());
}

TEST_F(PasteActivationTest, ATargetThatEndsDuringTheWaitEndsItWithoutAReport) {
  pasteText();
  workspace.terminate(editor.processIdentifier);
  dispatch().advance(Seconds(2));
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_EQ(workspace.frontmostQueries(), 1);
  EXPECT_EQ(workspace.observerCount(), 0U);
}

TEST_F(PasteActivationTest, AWindowThatIsClosedDuringTheWaitIsToldOf) {
  auto dialog = editor;
  dialog.window = 7;
  controller->setTargetApplication(workspace.launch(dialog));
  pasteText();
  workspace.exchangeWindow(editor.processIdentifier, 8);
  workspace.setFront(editor.processIdentifier);
  dispatch().advance(Seconds(2));
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::clipboardOnlyNoTarget));
  EXPECT_THAT(input.posted(), IsEmpty());
}

TEST_F(PasteActivationTest, AnotherWindowOfTheTargetInFrontIsNotEnough) {
  auto dialog = editor;
  dialog.window = 7;
  auto document = editor;
  document.window = 8;
  controller->setTargetApplication(workspace.launch(dialog));
  pasteText();
  // The document comes to the front, and the dialog after it.
  workspace.launch(document);
  workspace.bringToFront(editor.processIdentifier);
  workspace.launch(dialog);
  workspace.setFront(std::nullopt);
  dispatch().runQueued();
  EXPECT_THAT(input.posted(), IsEmpty());
  workspace.bringToFront(editor.processIdentifier);
  dispatch().runQueued();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::pasted));
}

TEST_F(PasteActivationTest, PastedIsSaidWhenTheKeysWerePressed) {
  input.answerLater();
  heedActivations();
  pasteText();
  dispatch().advance(Seconds(0.5));
  EXPECT_THAT(input.posted(), SizeIs(4));
  EXPECT_THAT(outcomes, IsEmpty());
  input.answerAll();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::pasted));
}

TEST_F(PasteActivationTest, KeysThatWereNotPressedAreToldOf) {
  input.setDelivery(KeyDelivery::failed);
  heedActivations();
  pasteText();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::clipboardOnlyNoTarget));
  EXPECT_EQ(pasteboard.contents().string, "text");
}

TEST_F(PasteActivationTest, AnswersToAnOlderPasteAreNotTakenForTheNewerOne) {
  input.answerLater();
  heedActivations();
  pasteText("older");
  pasteText("newer");
  input.answerAll();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::pasted));
  EXPECT_EQ(pasteboard.contents().string, "newer");
}

TEST_F(PasteActivationTest, ANewerPasteWithdrawsTheOlderOnesKeys) {
  input.answerLater();
  heedActivations();
  pasteText("older");
  EXPECT_EQ(input.withdrawals(), 0);
  pasteText("newer");
  EXPECT_EQ(input.withdrawals(), 1);
  input.answerAll();
  EXPECT_EQ(input.withdrawals(), 1) << "nothing waits any more";
}

TEST_F(PasteActivationTest, AWithdrawnPastePressesNothing) {
  pasteText();
  controller->withdraw();
  workspace.bringToFront(editor.processIdentifier);
  dispatch().advance(Seconds(2));
  EXPECT_THAT(input.posted(), IsEmpty());
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_EQ(pasteboard.contents().string, "text");
}

TEST_F(PasteActivationTest, KeysThatWaitToBePressedAreWithdrawnWithThePaste) {
  input.answerLater();
  heedActivations();
  pasteText();
  controller->withdraw();
  EXPECT_EQ(input.withdrawals(), 1);
  input.answerAll();
  EXPECT_THAT(outcomes, IsEmpty());
}

TEST_F(PasteActivationTest, WithoutTheKeyThatPastesNothingIsPasted) {
  input.makeImpossible(9, KeyDirection::down);
  heedActivations();
  pasteText();
  EXPECT_THAT(input.posted(), IsEmpty());
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::clipboardOnlyNoTarget));
}

TEST_F(PasteActivationTest, AnAnswerThatComesAfterItsEndDoesNothing) {
  input.answerLater();
  heedActivations();
  pasteText();
  controller.reset();
  input.answerAll();
  EXPECT_THAT(outcomes, IsEmpty());
}

TEST_F(PasteActivationTest, ItsOwnEndEndsTheWait) {
  pasteText();
  workspace.bringToFront(editor.processIdentifier);  // the announcement is on its way
  controller.reset();
  dispatch().advance(Seconds(2));
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_THAT(input.posted(), IsEmpty());
  EXPECT_EQ(workspace.observerCount(), 0U);
}

TEST_F(PasteActivationTest, MayBeEndedByTheReportItself) {
  controller->onOutcome = [this](PasteOutcome outcome) {
    outcomes.push_back(outcome);
    controller.reset();
  };
  pasteText();
  dispatch().advance(Seconds(2));
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::clipboardOnlyNoTarget));
}

TEST_F(PasteActivationTest, MayBeAskedToPasteAgainByTheReport) {
  controller->onOutcome = [this](PasteOutcome outcome) {
    outcomes.push_back(outcome);
    if (outcomes.size() == 1) pasteText("again");
  };
  pasteText();
  dispatch().advance(Seconds(1.3));
  workspace.bringToFront(editor.processIdentifier);
  dispatch().runQueued();
  EXPECT_THAT(outcomes, ElementsAre(PasteOutcome::clipboardOnlyNoTarget, PasteOutcome::pasted));
}

TEST(PasteOutcome, EveryEndButAPasteHasItsNotice) {
  EXPECT_EQ(notice(PasteOutcome::pasted), std::nullopt);
  EXPECT_EQ(notice(PasteOutcome::clipboardOnlyNeedsAccessibility),
            "Copied. Enable Accessibility for automatic paste.");
  EXPECT_EQ(notice(PasteOutcome::clipboardOnlyNoTarget), "Copied to clipboard. Press ⌘V to paste.");
  EXPECT_EQ(notice(PasteOutcome::unavailable), "This item is no longer available.");
}

}  // namespace
}  // namespace vantorel
