// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// The user's settings; a path where nothing can be when there is no place for settings.
inline std::filesystem::path defaultsFile(const XdgDirectories& directories) {
  return directories.configHome.value_or("/nonexistent") / "vantorel" / "defaults.json";
}

}  // namespace vantorel
