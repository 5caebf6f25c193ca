// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "base/FileSystem.h"
#include "store/ClipItem.h"

namespace vantorel {

struct ExportResult {
  FileSystem::Error error;  // nothing is left of an export that failed
  std::size_t missing = 0;  // image entries without their picture, which were left out
};

/// The encoded picture of an image entry, if it can be had.
using PictureOf = std::function<std::optional<Bytes>(const ClipItem&)>;

/// What stands in the way of an export to that absolute path: anything but an empty directory, as
/// `directory_not_empty` or `not_a_directory`.
[[nodiscard]] FileSystem::Error exportObstacle(FileSystem& files,
                                               const std::filesystem::path& directory);

/// Writes the entries into a new directory that only its owner can enter, in files that other
/// programs read, with a manifest beside them. All or nothing: it is written under another name
/// beside its place and put there in one step. No directory above it is
/// made.
[[nodiscard]] ExportResult exportHistory(FileSystem& files, const std::vector<ClipItem>& items,
                                         const PictureOf& pictureOf,
                                         const std::filesystem::path& directory, Date now);

}  // namespace vantorel
