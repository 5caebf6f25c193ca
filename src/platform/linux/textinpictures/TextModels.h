// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vantorel {

/// The models of the recognition engine that are installed: one file per language.
struct TextModels {
  std::filesystem::path directory;
  /// The engine's names for them ("eng", "heb"), sorted.
  std::vector<std::string> names;
};

/// The first of the directories that holds a model; its names are empty when none does. Files that
/// say how a page is laid out, and know no language, do not count.
[[nodiscard]] TextModels installedModels(const std::vector<std::filesystem::path>& directories);

/// Where models are looked for: `override`, as the engine's own environment variable has it, may be
/// empty; then where distributions put them.
[[nodiscard]] std::vector<std::filesystem::path> modelDirectories(const std::string& override);

/// "en-US" for "eng", "he-IL" for "heb"; other models keep their name.
[[nodiscard]] std::string languageOfModel(const std::string& name);

/// The models to read with, for languages in order of preference: those installed; without a
/// language the first one installed.
[[nodiscard]] std::vector<std::string> modelsFor(const TextModels& installed,
                                                 const std::vector<std::string>& languages);

}  // namespace vantorel
