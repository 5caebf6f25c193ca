// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "base/FileSystem.h"
#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// What the desktop says about its icon theme, in texts; empty where it says nothing.
struct IconThemeHints {
  std::string settingsManager;             // the name itself, of a running settings manager
  std::vector<std::string> gtkSettings;    // "settings.ini" files, the most important first
  std::vector<std::string> plasmaGlobals;  // "kdeglobals" files, likewise
};

/// The name of the icon theme in use: the settings manager's word, else what the files say;
/// "Adwaita" when none of them names a theme.
[[nodiscard]] std::string iconThemeName(const IconThemeHints& hints);

/// Reads the files among the hints. They are few and small.
[[nodiscard]] IconThemeHints readIconThemeHints(
    FileSystem& files, const std::vector<std::filesystem::path>& configDirectories,
    std::string settingsManager);

}  // namespace vantorel
