// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

/// What decides beside the entry itself whether a desktop heeds it.
struct AutostartSurroundings {
  std::vector<std::string> currentDesktops;  // $XDG_CURRENT_DESKTOP, its parts
  /// Whether a program can be started, by path or by name.
  std::function<bool(const std::string&)> programExists;
};

/// The text of an autostart entry. Lines that need no change stay as they are, whatever they hold;
/// a text that is no desktop entry counts as empty.
class AutostartEntry {
 public:
  explicit AutostartEntry(std::string_view text);

  [[nodiscard]] bool startsAtLogin(const AutostartSurroundings& surroundings) const;

  /// Makes this desktop start `program` at login, as long as it is there.
  void enable(const std::filesystem::path& program, const AutostartSurroundings& surroundings);
  void disable();
  /// What older versions wrote starts as `enable` makes it start; false when it was not theirs.
  [[nodiscard]] bool renew(const std::filesystem::path& program);

  [[nodiscard]] std::string text() const;

 private:
  [[nodiscard]] bool isApplication() const;
  [[nodiscard]] std::string value(std::string_view key) const;
  [[nodiscard]] bool isHere(const AutostartSurroundings& surroundings) const;
  void set(std::string_view key, std::string_view value);
  void remove(std::string_view key);

  // The lines before the group that counts and its header, those in it, and those behind.
  std::vector<std::string> before_;
  std::vector<std::string> group_;
  std::vector<std::string> behind_;
};

/// A path as the command of a desktop entry names it, without arguments.
[[nodiscard]] std::string desktopEntryCommand(const std::filesystem::path& program);

}  // namespace vantorel
