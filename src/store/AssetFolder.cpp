// SPDX-License-Identifier: MIT
#include "store/AssetFolder.h"

#include <string_view>
#include <utility>

#include "base/AtomicFile.h"
#include "base/Uuid.h"
#include "store/SealedFile.h"

namespace vantorel {
namespace {

constexpr std::size_t pictureNameLength = 40;  // a UUID, and ".png" or ".jpg"

bool isPictureName(std::string_view name) {
  if (name.size() != pictureNameLength) return false;
  const std::string_view ending = name.substr(pictureNameLength - 4);
  return (ending == ".png" || ending == ".jpg") && Uuid::parse(name.substr(0, name.size() - 4));
}

bool isUnfinishedPicture(std::string_view name) {
  if (name.size() <= pictureNameLength) return false;
  const std::string_view target = name.substr(1, pictureNameLength);
  return isPictureName(target) && isUnfinishedWrite(name, target);
}

}  // namespace

AssetFolder::AssetFolder(FileSystem& files, std::filesystem::path directory)
    : files_(files), directory_(std::move(directory)) {}

std::optional<std::filesystem::path> AssetFolder::pathOf(const std::string& name) const {
  if (name.empty() || name == "." || name == "..") return std::nullopt;
  constexpr std::string_view leadsElsewhere("/\0", 2);
  if (name.find_first_of(leadsElsewhere) != std::string::npos || isLink()) return std::nullopt;
  return directory_ / name;
}

std::uint64_t AssetFolder::assetBytes(const std::set<std::string>& except) const {
  std::uint64_t total = 0;
  for (const std::string& name : ownFiles()) {
    if (except.count(name) == 0) total += fileSize(name);
  }
  return total;
}

std::uint64_t AssetFolder::fileSize(const std::string& name) const {
  const auto path = pathOf(name);
  return path ? files_.fileSize(*path).value_or(0) : 0;
}

std::optional<Bytes> AssetFolder::read(const std::string& name) const {
  const auto path = pathOf(name);
  return path ? files_.readFile(*path, maximumFileBytes) : std::nullopt;
}

bool AssetFolder::seal(const std::string& name, const SecureStorage& storage,
                       ByteView plaintext) const {
  const auto path = pathOf(name);
  return path && writeSealed(files_, *path, storage, plaintext);
}

void AssetFolder::remove(const std::string& name) const {
  if (!isPictureName(name) && !isUnfinishedPicture(name)) return;
  // A file that cannot be removed now is removed as an orphan later.
  if (const auto path = pathOf(name)) (void)files_.remove(*path);
}

void AssetFolder::removeOrphans(const std::set<std::string>& named) const {
  for (const std::string& name : ownFiles()) {
    if (named.count(name) == 0) remove(name);
  }
}

std::vector<std::string> AssetFolder::ownFiles() const {
  std::vector<std::string> names;
  if (isLink()) return names;
  for (const auto& name : files_.list(directory_).value_or(std::vector<FileSystem::Path>())) {
    if (isPictureName(name.native()) || isUnfinishedPicture(name.native())) {
      names.push_back(name.native());
    }
  }
  return names;
}

}  // namespace vantorel
