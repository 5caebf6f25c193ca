// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/applications/DesktopEntry.h"

namespace vantorel {

/// What a window says about the application that it belongs to. Empty: it does not say.
struct WindowIdentity {
  std::string desktopFile;  // the entry's id, as toolkits announce it
  std::string wmClass;
  std::string wmInstance;
  std::string executable;  // file name of the process's program
};

/// The desktop entries of one moment, immutable, for any thread.
class DesktopEntryIndex {
 public:
  DesktopEntryIndex() = default;
  /// `entries` in the order of their importance, one for each id.
  explicit DesktopEntryIndex(std::vector<DesktopEntry> entries);

  [[nodiscard]] const std::vector<DesktopEntry>& entries() const { return entries_; }

  /// Null when there is none. The id is taken to the letter, then without regard to case.
  [[nodiscard]] const DesktopEntry* byId(std::string_view id) const;

  /// The entry that a window belongs to: the announced one, else by StartupWMClass, else the one
  /// called like the class or instance, else by the program. Null when none fits or when it cannot
  /// be told which.
  [[nodiscard]] const DesktopEntry* find(const WindowIdentity& identity) const;

 private:
  using Positions = std::vector<std::size_t>;
  using Names = std::map<std::string, Positions, std::less<>>;

  [[nodiscard]] const DesktopEntry* best(const Names& names, const std::string& name,
                                         const WindowIdentity& identity) const;
  [[nodiscard]] const DesktopEntry* byExecutable(const std::string& executable) const;

  std::vector<DesktopEntry> entries_;
  Names ids_;          // lower case
  Names lastParts_;    // of reverse-domain ids, lower case
  Names classes_;      // lower case
  Names executables_;  // as they are
};

}  // namespace vantorel
