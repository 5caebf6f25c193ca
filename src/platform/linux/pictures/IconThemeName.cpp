// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/IconThemeName.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/linux/pictures/IconThemeIndex.h"
#include "platform/linux/xdg/KeyFile.h"

namespace vantorel {

namespace {

constexpr std::uint64_t largestSettings = std::uint64_t{1} << 18U;  // bytes; some KB are usual

std::optional<std::string> themeIn(std::string_view text, std::string_view group,
                                   std::string_view key) {
  const KeyGroup keys = parseKeyGroup(text, group);
  auto name = valueOf(keys, key);
  if (name.size() > 1 && name.front() == '"' && name.back() == '"') {
    name = name.substr(1, name.size() - 2);
  }
  if (!isIconThemeName(name)) return std::nullopt;
  return std::string(name);
}

}  // namespace

std::string iconThemeName(const IconThemeHints& hints) {
  if (isIconThemeName(hints.settingsManager)) return hints.settingsManager;
  for (const auto& text : hints.gtkSettings) {
    if (auto name = themeIn(text, "Settings", "gtk-icon-theme-name")) return *name;
  }
  for (const auto& text : hints.plasmaGlobals) {
    if (auto name = themeIn(text, "Icons", "Theme")) return *name;
  }
  return "Adwaita";
}

IconThemeHints readIconThemeHints(FileSystem& files,
                                  const std::vector<std::filesystem::path>& configDirectories,
                                  std::string settingsManager) {
  IconThemeHints hints;
  hints.settingsManager = std::move(settingsManager);
  if (isIconThemeName(hints.settingsManager)) return hints;
  const auto read = [&files](std::vector<std::string>& texts, const std::filesystem::path& file) {
    if (const auto bytes = files.readFile(file, largestSettings)) {
      texts.emplace_back(textOf(*bytes));
    }
  };
  for (const auto& directory : configDirectories) {
    read(hints.gtkSettings, directory / "gtk-4.0" / "settings.ini");
    read(hints.gtkSettings, directory / "gtk-3.0" / "settings.ini");
    read(hints.plasmaGlobals, directory / "kdeglobals");
  }
  return hints;
}

}  // namespace vantorel
