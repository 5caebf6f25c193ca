// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "base/FileSystem.h"

namespace vantorel {

/// Where a history lives: a base directory, and in it one for the pictures. A base that is a link
/// is used, and what stood where it leads keeps its permissions. Cheap to copy. Any thread.
class HistoryDirectories {
 public:
  /// `files` outlives this.
  HistoryDirectories(FileSystem& files, std::filesystem::path base);

  [[nodiscard]] const std::filesystem::path& base() const { return base_; }
  [[nodiscard]] const std::filesystem::path& assets() const { return assets_; }

  /// Makes what is missing, and everything its owner's alone and this process's: two programs
  /// would delete each other's pictures, and the last to save would win.
  [[nodiscard]] FileSystem::Error prepare() const;
  /// The same, once they stood, should somebody have taken them away since. Asks the disk two
  /// questions where nobody has.
  [[nodiscard]] FileSystem::Error restore() const;

 private:
  FileSystem& files_;
  std::filesystem::path base_;
  std::filesystem::path assets_;
};

}  // namespace vantorel
