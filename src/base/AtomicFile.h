// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "base/FileSystem.h"

namespace vantorel {

/// Puts `bytes` in the place of the file at `path` in one step, readable by its owner alone: a
/// reader finds the old file or the new one, also after a crash. On failure the old file is whole
/// and no other file is left, except that the last step, bringing the directory to the disk, may
/// fail when the new file already stands. Any thread.
[[nodiscard]] FileSystem::Error writeAtomically(FileSystem& files,
                                                const std::filesystem::path& path, ByteView bytes);

/// Whether a file of this name was left by a process that was killed inside `writeAtomically` on a
/// file called `target`.
[[nodiscard]] bool isUnfinishedWrite(std::string_view name, std::string_view target);

}  // namespace vantorel
