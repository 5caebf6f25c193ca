// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/KeyEvent.h"

namespace vantorel {

/// What a key's meaning depends on, as it stands when the key is pressed.
struct PanelKeyState {
  bool searchBarShown = false;
  bool searchFieldFocused = false;  // the keyboard goes to the search field
  bool filterButtonFocused = false;
  bool searchTextEmpty = true;
  bool filtered = false;  // by type or by source
  std::size_t displayedCount = 0;
  std::optional<std::size_t> selection;  // a valid index into the displayed entries
  bool selectionPinned = false;
  bool selectionHasRow = false;
  bool previewShown = false;
  bool selectionPreviewed = false;  // and it is the selected entry's
};

enum class PanelAction {
  none,
  moveSelectedPin,  // by `step`
  renameSelected,
  openSearch,  // showing the panel first if it is hidden
  pasteAt,     // selects `index` first
  togglePin,
  pasteSelected,
  moveSelection,  // by `step`
  showPreview,    // of the selected entry, once it is in sight
  closePreview,
  copyFromPreview,  // what is marked there
  openMenu,         // of the selected entry, once it is in sight
  deleteSelected,
  clearSearch,
  clearFilters,
  hide,
  typeIntoSearch,  // shows the search field, which then receives this very key
};

enum class KeyHandling {
  passedOn,  // the key goes on to whatever has the keyboard
  consumed,
};

enum class PasteStyle { asCopied, plainText };

struct PanelKeyDecision {
  KeyHandling handling = KeyHandling::passedOn;
  PanelAction action = PanelAction::none;
  int step = 0;
  std::size_t index = 0;
  PasteStyle style = PasteStyle::asCopied;
  friend bool operator==(const PanelKeyDecision&, const PanelKeyDecision&) = default;
};

/// Whether such characters are to be seen: neither control nor format characters alone.
[[nodiscard]] bool isPrinting(const std::string& characters);

/// Whether a key means nothing to a line of text, so that it is the list's while one is typed.
[[nodiscard]] bool meansNothingInText(const KeyEvent& event);

/// What a key pressed in the panel does.
[[nodiscard]] PanelKeyDecision decideKey(const KeyEvent& event, const PanelKeyState& state);

}  // namespace vantorel
