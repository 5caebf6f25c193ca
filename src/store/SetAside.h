// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/Date.h"
#include "base/FileSystem.h"

namespace vantorel {

/// Renames what stands at `paths`, all in one directory, in their order, each to its name with the
/// same ending behind it: the moment in UTC, ".20250314-092653", and a number if that is taken.
/// Answers the ending; absent when something could not be renamed, after which all stands where it
/// stood.
[[nodiscard]] std::optional<std::string> moveAside(FileSystem& files,
                                                   const std::vector<std::filesystem::path>& paths,
                                                   Date now);

}  // namespace vantorel
