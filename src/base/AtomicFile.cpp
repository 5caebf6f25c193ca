// SPDX-License-Identifier: MIT
#include "base/AtomicFile.h"

#include "base/Uuid.h"

namespace vantorel {
namespace {

constexpr unsigned ownerOnly = 0600;
constexpr std::string_view temporaryEnding = ".tmp";

/// ".<target>.<UUID>.tmp": hidden, recognisable, and not to be guessed.
std::string temporaryName(const std::string& target) {
  return "." + target + "." + Uuid::random().string() + std::string(temporaryEnding);
}

}  // namespace

FileSystem::Error writeAtomically(FileSystem& files, const std::filesystem::path& path,
                                  ByteView bytes) {
  const auto temporary = path.parent_path() / temporaryName(path.filename().string());
  if (const auto error = files.writeNewFile(temporary, bytes, ownerOnly)) {
    // What stood there before is not ours to remove.
    if (error != std::errc::file_exists) (void)files.remove(temporary);
    return error;
  }
  if (const auto error = files.rename(temporary, path)) {
    (void)files.remove(temporary);
    return error;
  }
  return files.syncDirectory(path.parent_path());
}

bool isUnfinishedWrite(std::string_view name, std::string_view target) {
  const auto take = [&name](std::string_view prefix) {
    if (name.substr(0, prefix.size()) != prefix) return false;
    name.remove_prefix(prefix.size());
    return true;
  };
  if (!take(".") || !take(target) || !take(".")) return false;
  if (!name.ends_with(temporaryEnding)) return false;
  name.remove_suffix(temporaryEnding.size());
  return Uuid::parse(name).has_value();
}

}  // namespace vantorel
