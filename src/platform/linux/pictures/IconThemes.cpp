// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/IconThemes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <utility>

namespace vantorel {

namespace {

using Path = std::filesystem::path;

constexpr std::uint64_t largestIndex = std::uint64_t{1} << 20U;  // bytes; usual ones have 50 KB
constexpr int deepestInheritance = 16;
constexpr std::size_t maxThemes = 32;

constexpr std::array<const char*, 2> suffixes = {".png", ".svg"};

/// Looked into when all else has failed, so that a desktop without a theme has pictures of files.
constexpr std::array<const char*, 2> completeThemes = {"Adwaita", "breeze"};

}  // namespace

IconThemes::IconThemes(FileSystem& files, const IconPlaces& places, const std::string& name)
    : files_(files), pictures_(places.pictures), watched_(places.themes) {
  watched_.insert(watched_.end(), places.pictures.begin(), places.pictures.end());
  // Where everything rests on comes last, whoever inherits from it earlier.
  seen_.emplace_back("hicolor");
  if (isIconThemeName(name)) add(places, name);
  read(places, "hicolor", 0);
  for (const auto* each : completeThemes) add(places, each);
  std::sort(watched_.begin(), watched_.end());
  watched_.erase(std::unique(watched_.begin(), watched_.end()), watched_.end());
}

void IconThemes::add(const IconPlaces& places, const std::string& name) {
  if (std::find(seen_.begin(), seen_.end(), name) != seen_.end()) return;
  seen_.push_back(name);
  read(places, name, 0);
}

void IconThemes::read(const IconPlaces& places, const std::string& name, int depth) {
  if (themes_.size() == maxThemes) return;
  std::vector<Path> roots;
  std::optional<IconThemeIndex> index;
  for (const auto& place : places.themes) {
    const Path root = place / name;
    if (!files_.exists(root)) continue;
    watched_.push_back(root);
    roots.push_back(root);
    if (index) continue;
    const auto bytes = files_.readFile(root / "index.theme", largestIndex);
    if (bytes) index = parseIconThemeIndex(textOf(*bytes));
  }
  if (!index) return;
  auto& theme = themes_.emplace_back();
  for (const auto& directory : index->directories) {
    for (const auto& root : roots) {
      Path path = root / directory.path;
      if (files_.exists(path)) theme.push_back({std::move(path), directory});
    }
  }
  if (depth == deepestInheritance) return;
  for (const auto& parent : index->inherits) {
    if (std::find(seen_.begin(), seen_.end(), parent) != seen_.end()) continue;
    seen_.push_back(parent);
    read(places, parent, depth + 1);
  }
}

std::optional<Path> IconThemes::fileOf(const Path& directory, const std::string& name) const {
  for (const auto* suffix : suffixes) {
    Path file = directory / (name + suffix);
    if (files_.fileSize(file)) return file;
  }
  return std::nullopt;
}

std::optional<Path> IconThemes::findIn(const Theme& theme, const std::vector<std::string>& names,
                                       int pixels) const {
  std::vector<const Place*> ordered;
  ordered.reserve(theme.size());
  for (const auto& place : theme) ordered.push_back(&place);
  const auto rank = [pixels](const IconDirectory& directory) {
    // Of two that are equally far away, the larger one loses less.
    return std::tuple(!isMeantFor(directory, pixels, 1), pixelsApart(directory, pixels, 1),
                      -directory.size * directory.scale);
  };
  std::stable_sort(ordered.begin(), ordered.end(), [&](const auto* a, const auto* b) {
    return rank(a->directory) < rank(b->directory);
  });
  for (const auto& name : names) {
    for (const auto* place : ordered) {
      if (auto file = fileOf(place->path, name)) return file;
    }
  }
  return std::nullopt;
}

std::optional<Path> IconThemes::find(const std::vector<std::string>& names, int pixels) const {
  for (const auto& theme : themes_) {
    if (auto file = findIn(theme, names, pixels)) return file;
  }
  for (const auto& name : names) {
    for (const auto& directory : pictures_) {
      if (auto file = fileOf(directory, name)) return file;
    }
  }
  return std::nullopt;
}

std::vector<std::string> iconNamesOf(const std::string& icon) {
  constexpr std::size_t longestName = 200;  // bytes; a file's name has 255 with its suffix
  if (icon.empty() || icon.size() > longestName || icon.front() == '.' ||
      icon.find('/') != std::string::npos) {
    return {};
  }
  std::vector<std::string> names{icon};
  for (const std::string_view suffix : {".png", ".svg", ".xpm"}) {
    if (icon.size() > suffix.size() && icon.ends_with(suffix)) {
      names.push_back(icon.substr(0, icon.size() - suffix.size()));
    }
  }
  return names;
}

}  // namespace vantorel
