// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/IconThemeIndex.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <utility>

#include "platform/linux/xdg/KeyFile.h"

namespace vantorel {

namespace {

constexpr std::size_t maxDirectories = 2000;  // the largest themes have some hundred
constexpr std::size_t maxInherited = 16;
constexpr int largestSize = 4096;
constexpr int largestScale = 16;
constexpr std::size_t longestName = 255;

std::optional<int> number(const KeyGroup& keys, std::string_view key, int largest) {
  const auto text = valueOf(keys, key);
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (value < 0 || value > largest) return std::nullopt;
  return value;
}

/// Whether the path leads to something below where it starts.
bool staysInside(const std::string& text) {
  const std::filesystem::path path(text);
  return path.is_relative() &&
         std::none_of(path.begin(), path.end(), [](const auto& part) { return part == ".."; });
}

IconSizing sizingOf(std::string_view type) {
  if (type == "Fixed") return IconSizing::fixed;
  if (type == "Scalable") return IconSizing::scalable;
  return IconSizing::threshold;
}

std::optional<IconDirectory> directoryOf(const std::string& path, const KeyGroup& keys) {
  IconDirectory directory;
  directory.path = path;
  directory.size = number(keys, "Size", largestSize).value_or(0);
  directory.scale = number(keys, "Scale", largestScale).value_or(1);
  if (directory.size == 0 || directory.scale == 0 || !staysInside(path)) return std::nullopt;
  directory.minimum = number(keys, "MinSize", largestSize).value_or(directory.size);
  directory.maximum = number(keys, "MaxSize", largestSize).value_or(directory.size);
  directory.threshold = number(keys, "Threshold", largestSize).value_or(directory.threshold);
  directory.sizing = sizingOf(valueOf(keys, "Type"));
  return directory;
}

/// The smallest and the largest size that the directory is for.
std::pair<int, int> range(const IconDirectory& directory) {
  switch (directory.sizing) {
    case IconSizing::fixed:
      break;
    case IconSizing::scalable:
      return {directory.minimum, directory.maximum};
    case IconSizing::threshold:
      return {directory.size - directory.threshold, directory.size + directory.threshold};
  }
  return {directory.size, directory.size};
}

}  // namespace

bool isMeantFor(const IconDirectory& directory, int size, int scale) {
  const auto [smallest, largest] = range(directory);
  return directory.scale == scale && size >= smallest && size <= largest;
}

int pixelsApart(const IconDirectory& directory, int size, int scale) {
  const auto [smallest, largest] = range(directory);
  const int pixels = size * scale;
  if (pixels >= smallest * directory.scale && pixels <= largest * directory.scale) return 0;
  // Outside of a threshold the size itself counts: pictures are not made for its ends.
  if (directory.sizing == IconSizing::threshold) {
    return std::abs(directory.size * directory.scale - pixels);
  }
  return pixels < smallest * directory.scale ? smallest * directory.scale - pixels
                                             : pixels - largest * directory.scale;
}

bool isIconThemeName(std::string_view name) {
  return !name.empty() && name.size() <= longestName && name.front() != '.' &&
         name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

std::optional<IconThemeIndex> parseIconThemeIndex(std::string_view text) {
  const KeyFile file = parseKeyFile(text);
  const auto head = file.find("Icon Theme");
  if (head == file.end()) return std::nullopt;
  IconThemeIndex index;
  for (auto& name : listOf(valueOf(head->second, "Inherits"), ',')) {
    if (index.inherits.size() == maxInherited) break;
    if (isIconThemeName(name)) index.inherits.push_back(std::move(name));
  }
  std::set<std::string> seen;
  for (const auto* key : {"Directories", "ScaledDirectories"}) {
    for (const auto& path : listOf(valueOf(head->second, key), ',')) {
      if (index.directories.size() == maxDirectories) break;
      const auto group = file.find(path);
      if (group == file.end() || !seen.insert(path).second) continue;
      if (auto directory = directoryOf(path, group->second)) {
        index.directories.push_back(std::move(*directory));
      }
    }
  }
  return index;
}

}  // namespace vantorel
