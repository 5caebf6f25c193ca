// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

/// What one installed desktop entry says about its application. Texts are valid UTF-8.
struct DesktopEntry {
  std::string id;    // without ".desktop"; subdirectories joined by '-'
  std::string name;  // in the user's language; empty when the file has none
  std::string icon;  // a name in the icon theme, or an absolute path
  std::string startupWmClass;
  std::string executable;  // file name of the program it starts
  std::vector<std::string> categories;
  bool execHasArguments = false;  // beyond the field codes that stand for files
  bool noDisplay = false;         // not offered in menus, still names its windows

  [[nodiscard]] bool isTerminalEmulator() const;
  friend bool operator==(const DesktopEntry&, const DesktopEntry&) = default;
};

enum class DesktopEntryState { usable, hidden, notAnApplication };

struct ParsedDesktopEntry {
  DesktopEntryState state = DesktopEntryState::notAnApplication;
  DesktopEntry entry;  // meaningful when usable
};

/// The locale suffixes to look for, best first: "de_AT@euro" gives de_AT@euro, de_AT, de@euro, de.
/// An encoding is dropped. Empty for "", "C" and "POSIX".
[[nodiscard]] std::vector<std::string> desktopEntryLocales(std::string_view locale);

/// Reads the "[Desktop Entry]" group of `text`, whatever else it holds. Lines that make no sense
/// and values that are not UTF-8 are passed over. A hidden entry counts as deleted, and deletes the
/// entries of the same id in directories of lesser importance.
[[nodiscard]] ParsedDesktopEntry parseDesktopEntry(std::string id, std::string_view text,
                                                   const std::vector<std::string>& locales);

}  // namespace vantorel
