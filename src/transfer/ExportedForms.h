// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "base/Shared.h"
#include "store/ImportedClips.h"
#include "transfer/ExportManifest.h"

namespace vantorel {

/// An entry as an export has it: what the manifest says, and the bytes of each of its files.
struct ExportedClip {
  ExportedEntry entry;
  std::vector<SharedBytes> contents;  // as the entry's files are ordered
};

/// `number` names the files, which begin with it; `picture` is the encoded picture of an image.
/// Absent for an entry that `imported` would refuse, as one whose picture is missing.
[[nodiscard]] std::optional<ExportedClip> exported(const ClipItem& item, std::size_t number,
                                                   std::optional<Bytes> picture);

/// The entry that such an export tells of, under a new identity; absent when its files are not
/// those that an entry of its kind has, or hold no such thing. Nothing was copied later than `now`,
/// and what is said of it is cut to what a capture or a user could have said.
[[nodiscard]] std::optional<ImportedClip> imported(const ExportedClip& clip, Date now);

/// Paths, one a line; a line end in a name is written as "\n", and a backslash twice.
[[nodiscard]] std::string linesOfPaths(const FilePaths& paths);
/// Absent for anything that `linesOfPaths` does not write: no path, a relative one, a loose end.
[[nodiscard]] std::optional<std::vector<std::string>> pathsOfLines(std::string_view lines);

}  // namespace vantorel
