// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/FileSystem.h"
#include "platform/linux/applications/ChangeTimes.h"
#include "platform/linux/pictures/ThumbnailerEntry.h"
#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// The installed thumbnailers, read when first asked for and again when their directories have
/// changed. On one thread at a time, not the main one.
class Thumbnailers {
 public:
  struct Places {
    std::vector<std::filesystem::path> entries;   // the most important first
    std::vector<std::filesystem::path> programs;  // where programs are looked for

    [[nodiscard]] static Places fromEnvironment(const EnvironmentLookup& lookup);
  };

  /// `files` outlives this.
  Thumbnailers(FileSystem& files, Places places);

  /// The thumbnailer of files of that type, its program as an absolute path; absent when none is
  /// installed.
  [[nodiscard]] std::optional<ThumbnailerEntry> forType(std::string_view type);

 private:
  void read();
  void readEntry(const std::filesystem::path& file);
  [[nodiscard]] std::optional<std::string> program(const std::string& name) const;

  FileSystem& files_;
  const Places places_;
  std::optional<ChangeTimes> times_;
  std::map<std::string, ThumbnailerEntry, std::less<>> byType_;
};

}  // namespace vantorel
