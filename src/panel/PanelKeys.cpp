// SPDX-License-Identifier: MIT
#include "panel/PanelKeys.h"

#include <unicode/uchar.h>

#include <charconv>
#include <string>

#include "base/Ascii.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr int maxNumberedEntries = 9;
constexpr int pageStep = 8;  // of the nine rows that are seen, one stays in sight

PanelKeyDecision passOn() { return {}; }

PanelKeyDecision consume(PanelAction action) { return {KeyHandling::consumed, action}; }

PanelKeyDecision step(PanelAction action, int by) { return {KeyHandling::consumed, action, by}; }

bool held(const KeyEvent& event, EventFlags flag) { return (event.flags & flag) != 0; }

PasteStyle styleOf(const KeyEvent& event) {
  return held(event, flags::option) ? PasteStyle::plainText : PasteStyle::asCopied;
}

bool leavesSearchField(KeyCode key) {
  return key == keys::escape || key == keys::returnKey || key == keys::keypadEnter;
}

std::optional<int> decimal(const std::string& text) {
  int number = 0;
  const auto* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end) return std::nullopt;
  return number;
}

/// The entry that a digit stands for.
std::optional<std::size_t> numberedEntry(const std::string& key) {
  const auto number = decimal(key);
  if (!number || *number < 1 || *number > maxNumberedEntries) return std::nullopt;
  return static_cast<std::size_t>(*number - 1);
}

bool opensMenu(const KeyEvent& event) {
  return event.keyCode == keys::menu || (event.keyCode == keys::f10 && held(event, flags::shift));
}

std::optional<PanelKeyDecision> commandKey(const KeyEvent& event, const PanelKeyState& state) {
  const auto key = asciiLowerCased(event.charactersIgnoringModifiers);
  if (key == "r" && state.selection && state.selectionPinned) {
    return consume(PanelAction::renameSelected);
  }
  if (key == "f") return consume(PanelAction::openSearch);
  if (const auto index = numberedEntry(key); index && *index < state.displayedCount) {
    return PanelKeyDecision{KeyHandling::consumed, PanelAction::pasteAt, 0, *index, styleOf(event)};
  }
  if (key == "c" && state.previewShown) return consume(PanelAction::copyFromPreview);
  if (key == "p" && state.selection) return consume(PanelAction::togglePin);
  return std::nullopt;
}

PanelKeyDecision spaceKey(const PanelKeyState& state) {
  if (!state.selectionHasRow) return consume(PanelAction::none);
  return consume(state.selectionPreviewed ? PanelAction::closePreview : PanelAction::showPreview);
}

PanelKeyDecision escapeKey(const PanelKeyState& state) {
  if (state.previewShown) return consume(PanelAction::closePreview);
  if (!state.searchTextEmpty) return consume(PanelAction::clearSearch);
  if (state.filtered) return consume(PanelAction::clearFilters);
  return consume(PanelAction::hide);
}

PanelKeyDecision otherKey(const KeyEvent& event, const PanelKeyState& state) {
  if (opensMenu(event)) {
    return consume(state.selectionHasRow ? PanelAction::openMenu : PanelAction::none);
  }
  const bool command = held(event, flags::control) || held(event, flags::command);
  if (command || !isPrinting(event.characters)) return passOn();
  return {KeyHandling::passedOn, PanelAction::typeIntoSearch};
}

/// What a button keeps that has the keyboard: what opens its menu, and what would lead away from
/// it. All else is for the selected row, as it is from the list.
bool isKeptByButton(KeyCode key) {
  return key == keys::space || key == keys::downArrow || key == keys::upArrow;
}

PanelKeyDecision keyByCode(const KeyEvent& event, const PanelKeyState& state) {
  switch (event.keyCode) {
    case keys::returnKey:
    case keys::keypadEnter:
      return {KeyHandling::consumed, PanelAction::pasteSelected, 0, 0, styleOf(event)};
    case keys::downArrow:
      return step(PanelAction::moveSelection, 1);
    case keys::upArrow:
      return step(PanelAction::moveSelection, -1);
    case keys::pageDown:
      return step(PanelAction::moveSelection, pageStep);
    case keys::pageUp:
      return step(PanelAction::moveSelection, -pageStep);
    case keys::home:
      return step(PanelAction::moveSelection, -static_cast<int>(state.displayedCount));
    case keys::end:
      return step(PanelAction::moveSelection, static_cast<int>(state.displayedCount));
    case keys::space:
      return spaceKey(state);
    case keys::deleteKey:
      if (state.searchBarShown && !state.searchTextEmpty) {
        return {KeyHandling::passedOn, PanelAction::typeIntoSearch};
      }
      return consume(PanelAction::deleteSelected);
    case keys::forwardDelete:
      return consume(PanelAction::deleteSelected);
    case keys::escape:
      return escapeKey(state);
    default:
      return otherKey(event, state);
  }
}

}  // namespace

bool isPrinting(const std::string& characters) {
  for (std::size_t offset = 0; offset < characters.size();) {
    const auto category = u_charType(nextCodePoint(characters, offset));
    if (category != U_CONTROL_CHAR && category != U_FORMAT_CHAR) return true;
  }
  return false;
}

bool meansNothingInText(const KeyEvent& event) {
  switch (event.keyCode) {
    case keys::downArrow:
    case keys::upArrow:
    case keys::pageDown:
    case keys::pageUp:
      return true;
    default:
      break;
  }
  if (opensMenu(event)) return true;
  const auto key = asciiLowerCased(event.charactersIgnoringModifiers);
  return held(event, flags::command) && (key == "c" || numberedEntry(key));
}

PanelKeyDecision decideKey(const KeyEvent& event, const PanelKeyState& state) {
  if (state.searchBarShown && state.searchFieldFocused && !leavesSearchField(event.keyCode)) {
    return passOn();
  }
  if (state.filterButtonFocused && isKeptByButton(event.keyCode)) return passOn();
  const bool arrow = event.keyCode == keys::downArrow || event.keyCode == keys::upArrow;
  if (arrow && held(event, flags::option) && state.selection) {
    return step(PanelAction::moveSelectedPin, event.keyCode == keys::downArrow ? 1 : -1);
  }
  if (held(event, flags::command)) {
    if (const auto decision = commandKey(event, state)) return *decision;
  }
  return keyByCode(event, state);
}

}  // namespace vantorel
