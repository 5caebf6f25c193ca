#include "store/AssetFolder.h"

#include <utility>

namespace vantorel {

AssetFolder::AssetFolder(FileSystem& files, std::filesystem::path directory)
    : files_(files), directory_(std::move(directory)) {}

std::optional<std::filesystem::path> AssetFolder::pathOf(const std::string& name) const {
  if (name.empty() || name == "." || name == "..") return std::nullopt;
  constexpr std::string_view leadsElsewhere("/\0", 2);
  if (name.find_first_of(leadsElsewhere) != std::string::npos) return std::nullopt;
  return directory_ / name;
}

std::uint64_t AssetFolder::assetBytes(const std::set<std::string>& except) const {
  std::uint64_t total = 0;
  for (const auto& name : files_.list(directory_).value_or(std::vector<FileSystem::Path>())) {
    if (except.count(name.string()) == 0) total += fileSize(name.string());
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

void AssetFolder::remove(const std::string& name) const {
  // A file that cannot be removed now is removed as an orphan later.
  if (const auto path = pathOf(name)) (void)files_.remove(*path);
}

void AssetFolder::removeOrphans(const std::set<std::string>& named) const {
  for (const auto& name : files_.list(directory_).value_or(std::vector<FileSystem::Path>())) {
    if (named.count(name.string()) == 0) remove(name.string());
  }
}

}  // namespace vantorel
