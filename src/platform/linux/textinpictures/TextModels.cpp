// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/TextModels.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

namespace vantorel {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view modelExtension = ".traineddata";
constexpr std::array<std::pair<std::string_view, std::string_view>, 2> languages = {
    std::pair<std::string_view, std::string_view>{"eng", "en-US"}, {"heb", "he-IL"}};
constexpr std::array<std::string_view, 3> noLanguages = {"equ", "osd", "snum"};

std::vector<std::string> modelsIn(const fs::path& directory) {
  std::vector<std::string> names;
  std::error_code error;
  for (auto entry = fs::directory_iterator(directory, error);
       !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const fs::path name = entry->path().filename();
    if (name.extension() != modelExtension) continue;
    std::string model = name.stem().string();
    if (std::find(noLanguages.begin(), noLanguages.end(), model) == noLanguages.end())
      names.push_back(std::move(model));
  }
  std::sort(names.begin(), names.end());
  return names;
}

bool isOfKnownLanguage(const std::string& name) {
  return std::any_of(languages.begin(), languages.end(),
                     [&](const auto& pair) { return pair.first == name; });
}

}  // namespace

TextModels installedModels(const std::vector<fs::path>& directories) {
  TextModels others;
  for (const fs::path& directory : directories) {
    auto names = modelsIn(directory);
    if (std::any_of(names.begin(), names.end(), isOfKnownLanguage))
      return {directory, std::move(names)};
    if (others.names.empty() && !names.empty()) others = {directory, std::move(names)};
  }
  return others;
}

std::vector<fs::path> modelDirectories(const std::string& override) {
  std::vector<fs::path> directories;
  if (!override.empty()) {
    directories.emplace_back(override);
    directories.emplace_back(fs::path(override) / "tessdata");
  }
  for (const auto* usual : {"/usr/share/tesseract-ocr/5/tessdata", "/usr/share/tessdata",
                            "/usr/local/share/tessdata", "/usr/share/tesseract/tessdata"})
    directories.emplace_back(usual);
  return directories;
}

std::string languageOfModel(const std::string& name) {
  const auto known = std::find_if(languages.begin(), languages.end(),
                                  [&](const auto& pair) { return pair.first == name; });
  return known == languages.end() ? name : std::string(known->second);
}

std::vector<std::string> modelsFor(const TextModels& installed,
                                   const std::vector<std::string>& languages) {
  std::vector<std::string> names;
  for (const std::string& language : languages) {
    const auto model =
        std::find_if(installed.names.begin(), installed.names.end(),
                     [&](const std::string& name) { return languageOfModel(name) == language; });
    if (model != installed.names.end()) names.push_back(*model);
  }
  if (languages.empty() && !installed.names.empty()) names.push_back(installed.names.front());
  return names;
}

}  // namespace vantorel
