#include "panel/PanelKeys.h"

#include <charconv>
#include <string>

#include "base/Ascii.h"

namespace vantorel {
namespace {

constexpr int maxNumberedEntries = 9;

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

/// Whether a press types something: any character but U+0000 to U+001F and U+007F to U+009F.
bool printable(const std::string& characters) {
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const auto byte = static_cast<unsigned char>(characters[i]);
    if (byte < 0x20 || byte == 0x7F) continue;
    const bool c1 = byte == 0xC2 && i + 1 < characters.size() &&
                    static_cast<unsigned char>(characters[i + 1]) < 0xA0;
    if (!c1) return true;
    ++i;
  }
  return false;
}

std::optional<PanelKeyDecision> commandKey(const KeyEvent& event, const PanelKeyState& state) {
  const auto key = asciiLowerCased(event.charactersIgnoringModifiers);
  if (key == "r" && state.selection && state.selectionPinned) {
    return consume(PanelAction::renameSelected);
  }
  if (key == "f") return consume(PanelAction::openSearch);
  if (const auto number = decimal(key); number && *number >= 1 && *number <= maxNumberedEntries &&
                                        static_cast<std::size_t>(*number) <= state.displayedCount) {
    const auto index = static_cast<std::size_t>(*number - 1);
    return PanelKeyDecision{KeyHandling::consumed, PanelAction::pasteAt, 0, index, styleOf(event)};
  }
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
  const bool command = held(event, flags::control) || held(event, flags::command);
  if (command || !printable(event.characters) || state.searchBarShown) return passOn();
  return {KeyHandling::passedOn, PanelAction::typeIntoSearch};
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
    case keys::space:
      return spaceKey(state);
    case keys::deleteKey:
      if (state.searchBarShown && !state.searchTextEmpty) return passOn();
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

PanelKeyDecision decideKey(const KeyEvent& event, const PanelKeyState& state) {
  if (state.searchBarShown && state.searchFieldFocused && !leavesSearchField(event.keyCode)) {
    return passOn();
  }
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
