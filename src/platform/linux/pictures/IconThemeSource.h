// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "base/FileSystem.h"
#include "platform/linux/applications/ChangeTimes.h"
#include "platform/linux/pictures/IconThemes.h"

namespace vantorel {

/// The icon theme in use, read when it is first asked for.
class IconThemeSource {
 public:
  struct Places {
    IconPlaces icons;
    std::vector<std::filesystem::path> config;  // the most important first

    [[nodiscard]] static Places fromEnvironment(const EnvironmentLookup& lookup);
  };
  /// The theme that a running settings manager names, or an empty text. Called on any thread.
  using SettingsManager = std::function<std::string()>;

  /// `files` outlives this.
  IconThemeSource(FileSystem& files, Places places, SettingsManager settingsManager);

  /// Any thread. The first call reads the index of each theme that counts; whoever asks meanwhile
  /// waits for it.
  [[nodiscard]] std::shared_ptr<const IconThemes> themes();

  /// Reads again when another theme is in use now or an installed one has changed; answers whether
  /// it did. Nobody waits for it. On one thread at a time.
  bool refresh();

 private:
  struct State {
    std::string name;
    IconThemes themes;
    ChangeTimes times;
  };
  [[nodiscard]] std::string currentName() const;
  [[nodiscard]] std::shared_ptr<const State> read(std::string name) const;

  FileSystem& files_;
  const Places places_;
  const SettingsManager settingsManager_;
  std::mutex mutex_;
  std::shared_ptr<const State> state_;  // guarded
};

}  // namespace vantorel
