// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/IconPlaces.h"

namespace vantorel {

IconPlaces IconPlaces::fromEnvironment(const EnvironmentLookup& lookup) {
  IconPlaces places;
  const std::filesystem::path home(lookup("HOME").value_or(""));
  if (home.is_absolute()) places.themes.push_back(home / ".icons");
  const auto data = dataDirectories(lookup);
  for (const auto& directory : data) places.themes.push_back(directory / "icons");
  places.pictures = places.themes;
  for (const auto& directory : data) places.pictures.push_back(directory / "pixmaps");
  return places;
}

}  // namespace vantorel
