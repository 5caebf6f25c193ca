// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

/// Whether a row is a switch, and where it stands.
enum class MenuState { none, off, on };

/// One row of a menu, as a plain value. A row without a title is a separator; one with a submenu
/// does nothing by itself.
struct MenuRow {
  std::string title = {};
  std::string action = {};             // the owner's name for what choosing the row does
  std::string representedObject = {};  // and what it is done to
  MenuState state = MenuState::none;
  bool enabled = true;
  std::string keyEquivalent = {};  // a lower-case letter, with Command (Ctrl here); empty: none
  std::vector<MenuRow> submenu = {};

  [[nodiscard]] bool isSeparator() const { return title.empty(); }
  friend bool operator==(const MenuRow&, const MenuRow&) = default;
};

/// A title as a menu can show it: on one line, and no wider than a menu should be. Titles may hold
/// what other programs call themselves.
[[nodiscard]] std::string shownMenuTitle(std::string_view title);

}  // namespace vantorel
