// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/Thumbnailers.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <utility>

#include "base/SplitText.h"

namespace vantorel {

namespace {

using Path = std::filesystem::path;

constexpr std::uint64_t largestEntry = std::uint64_t{1} << 16U;  // bytes; usual ones have some 100
constexpr std::size_t maxEntries = 500;

}  // namespace

Thumbnailers::Places Thumbnailers::Places::fromEnvironment(const EnvironmentLookup& lookup) {
  Places places;
  for (const auto& directory : dataDirectories(lookup)) {
    places.entries.push_back(directory / "thumbnailers");
  }
  for (const auto& part : splitList(lookup("PATH").value_or("/usr/local/bin:/usr/bin:/bin"), ':')) {
    // A relative place would be another one in every directory.
    if (Path(part).is_absolute()) places.programs.emplace_back(part);
  }
  return places;
}

Thumbnailers::Thumbnailers(FileSystem& files, Places places)
    : files_(files), places_(std::move(places)) {}

std::optional<std::string> Thumbnailers::program(const std::string& name) const {
  const auto runs = [this](const Path& file) {
    return files_.fileSize(file) && ::access(file.c_str(), X_OK) == 0;
  };
  if (Path(name).is_absolute()) return runs(name) ? std::optional(name) : std::nullopt;
  if (name.empty() || name.find('/') != std::string::npos) return std::nullopt;
  for (const auto& directory : places_.programs) {
    if (runs(directory / name)) return (directory / name).string();
  }
  return std::nullopt;
}

void Thumbnailers::readEntry(const Path& file) {
  const auto bytes = files_.readFile(file, largestEntry);
  auto entry = bytes ? parseThumbnailer(textOf(*bytes)) : std::nullopt;
  if (!entry) return;
  if (!entry->tryExec.empty() && !program(entry->tryExec)) return;
  auto path = program(entry->command.front());
  if (!path) return;
  entry->command.front() = std::move(*path);
  for (const auto& type : entry->types) byType_.emplace(type, *entry);
}

void Thumbnailers::read() {
  byType_.clear();
  std::set<Path> seen;
  for (const auto& directory : places_.entries) {
    auto names = files_.list(directory).value_or(std::vector<Path>());
    // The order of a directory is chance; which of two thumbnailers serves a type is not.
    std::sort(names.begin(), names.end());
    for (const auto& name : names) {
      if (name.extension() != ".thumbnailer" || seen.size() == maxEntries) continue;
      // A file of a name that a more important directory has is replaced by that one.
      if (seen.insert(name).second) readEntry(directory / name);
    }
  }
}

std::optional<ThumbnailerEntry> Thumbnailers::forType(std::string_view type) {
  if (!times_ || times_->haveChanged()) {
    times_.emplace(places_.entries);
    read();
  }
  const auto found = byType_.find(type);
  return found != byType_.end() ? std::optional(found->second) : std::nullopt;
}

}  // namespace vantorel
