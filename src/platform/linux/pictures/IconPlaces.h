// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <vector>

#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// Where icons are looked for, the most important place first.
struct IconPlaces {
  std::vector<std::filesystem::path> themes;    // each holds a directory per theme
  std::vector<std::filesystem::path> pictures;  // each holds pictures that belong to no theme

  [[nodiscard]] static IconPlaces fromEnvironment(const EnvironmentLookup& lookup);
};

}  // namespace vantorel
