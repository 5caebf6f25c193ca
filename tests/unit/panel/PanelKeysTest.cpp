// SPDX-License-Identifier: MIT
#include "panel/PanelKeys.h"

#include <gtest/gtest.h>

#include <string>

namespace vantorel {
namespace {

constexpr PanelKeyDecision passedOn{};

PanelKeyDecision consumed(PanelAction action) { return {KeyHandling::consumed, action}; }

KeyEvent key(KeyCode code, EventFlags modifiers = 0, std::string characters = "") {
  return {code, modifiers, characters, characters};
}

/// A key that types `characters`, with what else is held.
KeyEvent character(std::string characters, EventFlags modifiers = 0) {
  constexpr KeyCode somewhere = 0;
  return {somewhere, modifiers, characters, characters};
}

KeyEvent command(std::string characters, EventFlags more = 0) {
  return character(std::move(characters), flags::command | more);
}

/// Three entries, the first selected, nothing else going on.
PanelKeyState listState() {
  PanelKeyState state;
  state.displayedCount = 3;
  state.selection = 0;
  state.selectionHasRow = true;
  return state;
}

PanelKeyState typingState() {
  auto state = listState();
  state.searchBarShown = true;
  state.searchFieldFocused = true;
  return state;
}

PanelKeyState emptyState() { return {}; }

// Typing in the search field comes first.

TEST(PanelKeysWhileTyping, TheFieldReceivesWhateverIsNotReturnOrEscape) {
  for (const auto& event :
       {key(keys::downArrow), key(keys::upArrow), key(keys::space, 0, " "), key(keys::deleteKey),
        key(keys::forwardDelete), key(keys::downArrow, flags::option), character("a"), command("f"),
        command("p"), command("1"), command("r")}) {
    EXPECT_EQ(decideKey(event, typingState()), passedOn) << event.characters << event.keyCode;
  }
}

TEST(PanelKeysWhileTyping, ReturnPastesAndEscapeClears) {
  auto state = typingState();
  state.searchTextEmpty = false;
  EXPECT_EQ(decideKey(key(keys::returnKey), state).action, PanelAction::pasteSelected);
  EXPECT_EQ(decideKey(key(keys::keypadEnter), state).action, PanelAction::pasteSelected);
  EXPECT_EQ(decideKey(key(keys::escape), state), consumed(PanelAction::clearSearch));
}

TEST(PanelKeysWhileTyping, AFieldThatIsShownWithoutTheKeyboardTakesNothing) {
  auto state = typingState();
  state.searchFieldFocused = false;
  EXPECT_EQ(decideKey(key(keys::downArrow), state).action, PanelAction::moveSelection);
}

// Option and the arrows come second.

TEST(PanelKeys, OptionArrowsMoveThePin) {
  const auto down = decideKey(key(keys::downArrow, flags::option), listState());
  EXPECT_EQ(down, (PanelKeyDecision{KeyHandling::consumed, PanelAction::moveSelectedPin, 1}));
  const auto up = decideKey(key(keys::upArrow, flags::option), listState());
  EXPECT_EQ(up, (PanelKeyDecision{KeyHandling::consumed, PanelAction::moveSelectedPin, -1}));
}

TEST(PanelKeys, OptionArrowsWithoutSelectionAreArrows) {
  EXPECT_EQ(decideKey(key(keys::downArrow, flags::option), emptyState()).action,
            PanelAction::moveSelection);
}

// Command comes third.

TEST(PanelKeys, CommandRRenamesAPin) {
  auto state = listState();
  state.selectionPinned = true;
  EXPECT_EQ(decideKey(command("r"), state), consumed(PanelAction::renameSelected));
  EXPECT_EQ(decideKey(command("R"), state), consumed(PanelAction::renameSelected));
}

TEST(PanelKeys, CommandROnAnythingElseIsPassedOn) {
  EXPECT_EQ(decideKey(command("r"), listState()), passedOn);
  EXPECT_EQ(decideKey(command("r"), emptyState()), passedOn);
}

TEST(PanelKeys, CommandFOpensTheSearch) {
  EXPECT_EQ(decideKey(command("f"), listState()), consumed(PanelAction::openSearch));
  EXPECT_EQ(decideKey(command("F", flags::shift), emptyState()), consumed(PanelAction::openSearch));
}

TEST(PanelKeys, CommandDigitsPasteTheEntryOfThatNumber) {
  EXPECT_EQ(
      decideKey(command("3"), listState()),
      (PanelKeyDecision{KeyHandling::consumed, PanelAction::pasteAt, 0, 2, PasteStyle::asCopied}));
  EXPECT_EQ(
      decideKey(command("1", flags::option), listState()),
      (PanelKeyDecision{KeyHandling::consumed, PanelAction::pasteAt, 0, 0, PasteStyle::plainText}));
}

TEST(PanelKeys, CommandDigitsBeyondTheListDoNothing) {
  auto two = listState();
  two.displayedCount = 2;
  EXPECT_EQ(decideKey(command("3"), two), passedOn);
  EXPECT_EQ(decideKey(command("1"), emptyState()), passedOn);
  auto many = listState();
  many.displayedCount = 50;
  EXPECT_EQ(decideKey(command("0"), many), passedOn);
  EXPECT_EQ(decideKey(command("12"), many), passedOn);
  EXPECT_EQ(decideKey(command("1a"), many), passedOn);
  EXPECT_EQ(decideKey(command("99999999999999999999"), many), passedOn);
  EXPECT_EQ(decideKey(command("9"), many).index, 8U);
}

TEST(PanelKeys, CommandPTogglesThePin) {
  EXPECT_EQ(decideKey(command("p"), listState()), consumed(PanelAction::togglePin));
  EXPECT_EQ(decideKey(command("p"), emptyState()), passedOn);
}

TEST(PanelKeys, ACommandThatMeansNothingIsJudgedByItsKey) {
  auto down = key(keys::downArrow, flags::command);
  EXPECT_EQ(decideKey(down, listState()).action, PanelAction::moveSelection);
  EXPECT_EQ(decideKey(command("x"), listState()), passedOn);
}

// Then the key code decides.

TEST(PanelKeys, ReturnAndEnterPasteTheSelection) {
  for (const auto code : {keys::returnKey, keys::keypadEnter}) {
    const auto plain = decideKey(key(code, flags::option), listState());
    EXPECT_EQ(decideKey(key(code), listState()), consumed(PanelAction::pasteSelected));
    EXPECT_EQ(plain, (PanelKeyDecision{KeyHandling::consumed, PanelAction::pasteSelected, 0, 0,
                                       PasteStyle::plainText}));
  }
}

TEST(PanelKeys, ArrowsMoveTheSelection) {
  EXPECT_EQ(decideKey(key(keys::downArrow), listState()),
            (PanelKeyDecision{KeyHandling::consumed, PanelAction::moveSelection, 1}));
  EXPECT_EQ(decideKey(key(keys::upArrow), listState()),
            (PanelKeyDecision{KeyHandling::consumed, PanelAction::moveSelection, -1}));
}

TEST(PanelKeys, SpaceShowsThePreviewAndNeverTypes) {
  EXPECT_EQ(decideKey(key(keys::space, 0, " "), listState()), consumed(PanelAction::showPreview));
  EXPECT_EQ(decideKey(key(keys::space, 0, " "), emptyState()), consumed(PanelAction::none));
}

TEST(PanelKeys, SpaceTakesThePreviewOfTheSelectionAwayAndReplacesAnother) {
  auto state = listState();
  state.previewShown = true;
  EXPECT_EQ(decideKey(key(keys::space), state), consumed(PanelAction::showPreview));
  state.selectionPreviewed = true;
  EXPECT_EQ(decideKey(key(keys::space), state), consumed(PanelAction::closePreview));
}

TEST(PanelKeys, DeleteRemovesTheSelection) {
  EXPECT_EQ(decideKey(key(keys::deleteKey, 0, "\b"), listState()),
            consumed(PanelAction::deleteSelected));
  auto emptySearch = listState();
  emptySearch.searchBarShown = true;
  EXPECT_EQ(decideKey(key(keys::deleteKey), emptySearch), consumed(PanelAction::deleteSelected));
}

TEST(PanelKeys, DeleteLeavesTheListAloneWhileThereIsSearchText) {
  auto state = listState();
  state.searchBarShown = true;
  state.searchTextEmpty = false;
  EXPECT_EQ(decideKey(key(keys::deleteKey), state),
            (PanelKeyDecision{KeyHandling::passedOn, PanelAction::typeIntoSearch}));
  EXPECT_EQ(decideKey(key(keys::forwardDelete), state), consumed(PanelAction::deleteSelected));
}

TEST(PanelKeys, EscapeTakesOneLayerAtATime) {
  auto state = typingState();
  state.searchTextEmpty = false;
  state.filtered = true;
  state.previewShown = true;
  EXPECT_EQ(decideKey(key(keys::escape), state), consumed(PanelAction::closePreview));
  state.previewShown = false;
  EXPECT_EQ(decideKey(key(keys::escape), state), consumed(PanelAction::clearSearch));
  state.searchTextEmpty = true;
  EXPECT_EQ(decideKey(key(keys::escape), state), consumed(PanelAction::clearFilters));
  state.filtered = false;
  EXPECT_EQ(decideKey(key(keys::escape), state), consumed(PanelAction::hide));
}

TEST(PanelKeys, APrintableKeyOpensTheSearchAndGoesOnToIt) {
  const PanelKeyDecision typing{KeyHandling::passedOn, PanelAction::typeIntoSearch};
  EXPECT_EQ(decideKey(character("a"), listState()), typing);
  EXPECT_EQ(decideKey(character("ש"), emptyState()), typing);
  EXPECT_EQ(decideKey(character("é", flags::option), listState()), typing);
  EXPECT_EQ(decideKey(character("\u00A0"), listState()), typing);
}

TEST(PanelKeys, APrintableKeyInTheListGoesOnWithTheSearch) {
  auto state = listState();
  state.searchBarShown = true;
  EXPECT_EQ(decideKey(character("a"), state),
            (PanelKeyDecision{KeyHandling::passedOn, PanelAction::typeIntoSearch}));
}

TEST(PanelKeys, WhatIsNotSeenOpensNoSearch) {
  for (const char* mark : {"\u200B", "\u200C", "\u200D", "\u200E", "\u200F", "\u061C", "\u00AD",
                           "\u2066", "\uFEFF", "\U000E0041"}) {
    EXPECT_EQ(decideKey(character(mark), listState()), passedOn) << mark;
    EXPECT_FALSE(isPrinting(mark));
    EXPECT_TRUE(isPrinting(std::string(mark) + "a")) << "but within a word they belong to it";
    EXPECT_EQ(decideKey(character(mark), typingState()), passedOn) << "and to the field";
  }
}

TEST(PanelKeys, PagesAndEndsMoveTheSelection) {
  const auto moved = [](KeyCode code) { return decideKey(key(code), listState()); };
  const auto by = [](int rows) {
    return PanelKeyDecision{KeyHandling::consumed, PanelAction::moveSelection, rows};
  };
  EXPECT_EQ(moved(keys::pageDown), by(8));
  EXPECT_EQ(moved(keys::pageUp), by(-8));
  EXPECT_EQ(moved(keys::home), by(-3));
  EXPECT_EQ(moved(keys::end), by(3));
}

TEST(PanelKeys, TheMenuKeyAndShiftF10OpenTheMenuOfTheSelection) {
  for (const auto& event : {key(keys::menu), key(keys::f10, flags::shift)}) {
    EXPECT_EQ(decideKey(event, listState()), consumed(PanelAction::openMenu));
    EXPECT_EQ(decideKey(event, emptyState()), consumed(PanelAction::none));
  }
  EXPECT_EQ(decideKey(key(keys::f10), listState()), passedOn);
}

TEST(PanelKeys, CommandCCopiesFromThePreview) {
  auto state = listState();
  EXPECT_EQ(decideKey(command("c"), state), passedOn);
  state.previewShown = true;
  EXPECT_EQ(decideKey(command("c"), state), consumed(PanelAction::copyFromPreview));
}

TEST(PanelKeys, AFilterButtonKeepsWhatOpensItsMenuAndNothingElse) {
  auto state = listState();
  state.searchBarShown = true;
  state.filterButtonFocused = true;
  for (const auto code : {keys::space, keys::downArrow, keys::upArrow}) {
    EXPECT_EQ(decideKey(key(code), state), passedOn) << code;
  }
  for (const auto code : {keys::deleteKey, keys::forwardDelete}) {
    EXPECT_EQ(decideKey(key(code), state).action, PanelAction::deleteSelected) << code;
  }
  EXPECT_EQ(decideKey(key(keys::returnKey), state).action, PanelAction::pasteSelected);
  EXPECT_EQ(decideKey(key(keys::escape), state).action, PanelAction::hide);
  EXPECT_EQ(decideKey(character("a"), state).action, PanelAction::typeIntoSearch);
  state.searchTextEmpty = false;
  EXPECT_EQ(decideKey(key(keys::deleteKey), state).action, PanelAction::typeIntoSearch);
}

TEST(PanelKeys, WhatATextHasNoUseForIsTheLists) {
  for (const auto& event :
       {key(keys::downArrow), key(keys::upArrow, flags::option), key(keys::pageDown),
        key(keys::pageUp), key(keys::menu), key(keys::f10, flags::shift), command("1"),
        command("9", flags::option), command("c")}) {
    EXPECT_TRUE(meansNothingInText(event)) << event.characters << event.keyCode;
  }
  for (const auto& event :
       {key(keys::home), key(keys::end), key(keys::space, 0, " "), key(keys::deleteKey),
        key(keys::forwardDelete), key(keys::f10), character("1"), character("c"), command("0"),
        command("12"), command("v"), command("a")}) {
    EXPECT_FALSE(meansNothingInText(event)) << event.characters << event.keyCode;
  }
}

TEST(PanelKeys, KeysThatTypeNothingArePassedOn) {
  EXPECT_EQ(decideKey(character(""), listState()), passedOn);
  EXPECT_EQ(decideKey(character("\t"), listState()), passedOn);
  EXPECT_EQ(decideKey(character("\u0085"), listState()), passedOn);
  EXPECT_EQ(decideKey(character("a", flags::control), listState()), passedOn);
  EXPECT_EQ(decideKey(character("a", flags::command), listState()), passedOn);
}

}  // namespace
}  // namespace vantorel
