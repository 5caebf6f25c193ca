// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "base/Date.h"
#include "base/FileSystem.h"
#include "store/ImportedClips.h"

namespace vantorel {

/// What an export holds, or why it cannot be taken in: one sentence, with the directory's name as
/// it is. It is read whole or not at all.
struct ExportReading {
  std::vector<ImportedClip> clips;
  std::string trouble;
};

/// Reads what `exportHistory` wrote, and proves that every file is the one that was written. May
/// take as long as reading all of it takes. Any thread.
[[nodiscard]] ExportReading readExport(FileSystem& files, const std::filesystem::path& directory,
                                       Date now);

/// What came of taking in so many clips, of which `kept` are in the history now.
[[nodiscard]] std::string intakeSentence(std::size_t kept, std::size_t count);

}  // namespace vantorel
