// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "base/FileSystem.h"
#include "store/ClipItem.h"

namespace vantorel {

struct ExportResult {
  FileSystem::Error error;  // nothing is left of an export that failed
  std::size_t missing = 0;  // entries without their contents, which were left out
};

/// The encoded picture of an image entry, if it can be had.
using PictureOf = std::function<std::optional<Bytes>(const ClipItem&)>;

/// What stands in the way of an export to that absolute path: anything but an empty directory, as
/// `directory_not_empty` or `not_a_directory`.
[[nodiscard]] FileSystem::Error exportObstacle(FileSystem& files,
                                               const std::filesystem::path& directory);

/// Whether a directory of this name holds what an export had written when its process was killed.
[[nodiscard]] bool isUnfinishedExport(std::string_view name);

/// Writes the entries into a directory that only its owner can enter, in files that other programs
/// read, with a manifest beside them. All or nothing: it is written under another name, beside its
/// place, which is then taken in one step, or within it where an empty directory stands there; that
/// one becomes its owner's alone, and gets the manifest last. No directory above it is made. What
/// is unfinished is claimed.
[[nodiscard]] ExportResult exportHistory(FileSystem& files, const std::vector<ClipItem>& items,
                                         const PictureOf& pictureOf,
                                         const std::filesystem::path& directory, Date now);

}  // namespace vantorel
