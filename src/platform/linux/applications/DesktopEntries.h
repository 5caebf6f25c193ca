// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/applications/DesktopEntryIndex.h"
#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// Where desktop entries are looked for, and in which language.
struct DesktopEntryPlaces {
  std::vector<std::filesystem::path> directories;  // "applications", the most important first
  std::vector<std::string> locales;                // suffixes, the best first

  /// By XDG_DATA_HOME, XDG_DATA_DIRS and the locale of messages.
  [[nodiscard]] static DesktopEntryPlaces fromEnvironment(const EnvironmentLookup& lookup);
};

/// The installed desktop entries. Empty until the first `refresh()`.
class DesktopEntries {
 public:
  explicit DesktopEntries(DesktopEntryPlaces places);

  /// The entries as last read. Any thread, at once.
  [[nodiscard]] std::shared_ptr<const DesktopEntryIndex> index() const;

  /// What the application of that id is called in the user's language; absent when there is none,
  /// or it has no name. Any thread, at once.
  [[nodiscard]] std::optional<std::string> nameOf(const std::string& id) const;

  /// Reads the directories again when one of them has changed since the last time; answers whether
  /// it did. Scans the disk: never on the main thread, and on one thread at a time.
  bool refresh();

 private:
  using Stamps = std::map<std::filesystem::path, std::filesystem::file_time_type>;

  [[nodiscard]] bool isUnchanged() const;

  DesktopEntryPlaces places_;
  Stamps stamps_;  // of every directory that was looked into or was missing
  bool everRead_ = false;

  mutable std::mutex mutex_;
  std::shared_ptr<const DesktopEntryIndex> index_;  // guarded
};

}  // namespace vantorel
