#include "store/HistoryDirectories.h"

#include <utility>

namespace vantorel {

using Error = FileSystem::Error;

HistoryDirectories::HistoryDirectories(FileSystem& files, std::filesystem::path base)
    : files_(files), base_(std::move(base)), assets_(base_ / "Assets") {}

Error HistoryDirectories::prepare() const {
  constexpr unsigned ownerOnly = 0700;
  if (const Error error = files_.createDirectories(assets_, ownerOnly)) return error;
  // The permissions may be another's, if the directories stood there before.
  if (const Error error = files_.setPermissions(base_, ownerOnly)) return error;
  if (const Error error = files_.setPermissions(assets_, ownerOnly)) return error;
  if (const Error error = files_.excludeFromBackup(base_)) return error;
  return files_.claim(base_);
}

Error HistoryDirectories::restore() const { return files_.exists(assets_) ? Error() : prepare(); }

}  // namespace vantorel
