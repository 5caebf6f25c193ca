#include "platform/linux/pictures/MimeTypes.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "text/Unicode.h"

namespace vantorel {

namespace {

constexpr std::uint64_t largestFile = std::uint64_t{4} << 20U;  // bytes; 40 KB are usual

/// "type:icon" on each line; the first word on a type counts.
void readIconNames(std::string_view text, MimeTypes::IconNames& names) {
  while (!text.empty()) {
    const auto end = text.find('\n');
    const auto line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    const auto colon = line.find(':');
    if (colon == std::string_view::npos || !isValidUtf8(line)) continue;
    const auto icon = line.substr(colon + 1);
    if (icon.empty() || icon.find('/') != std::string_view::npos) continue;
    names.emplace(line.substr(0, colon), icon);
  }
}

}  // namespace

MimeTypes::MimeTypes(MimeGlobs globs, IconNames icons, IconNames genericIcons)
    : globs_(std::move(globs)), icons_(std::move(icons)), genericIcons_(std::move(genericIcons)) {}

MimeTypes MimeTypes::read(FileSystem& files,
                          const std::vector<std::filesystem::path>& directories) {
  std::vector<std::string> globs;
  IconNames icons;
  IconNames genericIcons;
  for (const auto& directory : directories) {
    if (const auto bytes = files.readFile(directory / "globs2", largestFile)) {
      globs.emplace_back(textOf(*bytes));
    }
    if (const auto bytes = files.readFile(directory / "icons", largestFile)) {
      readIconNames(textOf(*bytes), icons);
    }
    if (const auto bytes = files.readFile(directory / "generic-icons", largestFile)) {
      readIconNames(textOf(*bytes), genericIcons);
    }
  }
  return {MimeGlobs(globs), std::move(icons), std::move(genericIcons)};
}

std::string_view MimeTypes::typeOf(const std::string& fileName) const {
  return globs_.typeOf(fileName);
}

std::vector<std::string> MimeTypes::iconsOf(std::string_view type) const {
  std::vector<std::string> names;
  const auto add = [&names](std::string name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) {
      names.push_back(std::move(name));
    }
  };
  const auto addNamed = [&](const IconNames& all) {
    const auto found = all.find(type);
    if (found != all.end()) add(found->second);
  };
  addNamed(icons_);
  if (!type.empty()) {
    std::string own(type);
    std::replace(own.begin(), own.end(), '/', '-');
    add(std::move(own));
  }
  addNamed(genericIcons_);
  if (type == directoryType) add("folder");
  const auto slash = type.find('/');
  if (slash != std::string_view::npos) add(std::string(type.substr(0, slash)) + "-x-generic");
  add("text-x-generic");
  add("unknown");
  return names;
}

}  // namespace vantorel
