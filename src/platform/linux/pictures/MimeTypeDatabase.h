// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/applications/ChangeTimes.h"
#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// What a directory counts as.
inline constexpr std::string_view directoryType = "inode/directory";

/// The installed MIME types, as far as names of files and pictures of types go. The toolkit reads
/// them when they are first asked for, and again some seconds after they changed. Where none are
/// installed, it may have its own; else no name has a type. Any thread, except where it says
/// otherwise.
class MimeTypeDatabase {
 public:
  /// `directories` are the "mime" directories, to notice that they changed; which ones are read is
  /// the toolkit's matter.
  explicit MimeTypeDatabase(const std::vector<std::filesystem::path>& directories);

  [[nodiscard]] static std::vector<std::filesystem::path> directories(
      const EnvironmentLookup& lookup);

  /// The type of a file by its name alone; empty when the name tells nothing.
  [[nodiscard]] std::string typeOf(const std::string& fileName) const;

  /// The icons that may stand for the type, the best first, down to a plain document.
  [[nodiscard]] std::vector<std::string> iconsOf(const std::string& type) const;

  /// Whether answers may be others than at the last call. Looks at the disk; on one thread at a
  /// time.
  bool refresh();

 private:
  std::vector<std::filesystem::path> caches_;
  std::optional<ChangeTimes> times_;  // absent before the first look
  bool changedBefore_ = false;        // at the last call
};

}  // namespace vantorel
