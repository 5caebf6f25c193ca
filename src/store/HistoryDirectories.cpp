// SPDX-License-Identifier: MIT
#include "store/HistoryDirectories.h"

#include <utility>

namespace vantorel {

using Error = FileSystem::Error;

HistoryDirectories::HistoryDirectories(FileSystem& files, std::filesystem::path base)
    : files_(files), base_(std::move(base)), assets_(base_ / "Assets") {}

Error HistoryDirectories::prepare() const {
  constexpr unsigned ownerOnly = 0700;
  const bool leadsElsewhere = files_.isLink(assets_);  // which `AssetFolder` does not follow
  const auto& innermost = leadsElsewhere ? base_ : assets_;
  const bool stood = files_.exists(base_);
  if (const Error error = files_.createDirectories(innermost, ownerOnly)) return error;
  // What is saved in it is on the disk only when its own name is.
  if (!stood) (void)files_.syncDirectory(base_.parent_path());
  if (!files_.isLink(base_)) {
    // The permissions may be another's, if the directories stood there before.
    if (const Error error = files_.setPermissions(base_, ownerOnly)) return error;
    if (const Error error = files_.setPermissions(innermost, ownerOnly)) return error;
    if (const Error error = files_.excludeFromBackup(base_)) return error;
  }
  return files_.claim(base_);
}

Error HistoryDirectories::restore() const {
  // What stands there may be another program's by now.
  return files_.exists(assets_) ? files_.claim(base_) : prepare();
}

}  // namespace vantorel
