// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/linux/applications/DesktopEntry.h"

namespace vantorel {

struct DesktopEntryScan {
  std::vector<DesktopEntry> entries;  // one for each id, the most important directory's
  std::map<std::filesystem::path, std::filesystem::file_time_type> directories;
};

/// When `directory` last changed; the clock's epoch when there is none.
[[nodiscard]] std::filesystem::file_time_type changeTime(const std::filesystem::path& directory);

/// Reads every entry below `directories`. Damaged, giant and special files are passed over, and a
/// directory that links back into itself is entered once. Scans the disk.
[[nodiscard]] DesktopEntryScan scanDesktopEntries(
    const std::vector<std::filesystem::path>& directories, const std::vector<std::string>& locales);

}  // namespace vantorel
