// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vantorel {

/// Answers the value of an environment variable; absent when it is not set.
using EnvironmentLookup = std::function<std::optional<std::string>(const char* name)>;

/// Where a program keeps its files, by the base-directory convention: a variable counts only when
/// it holds an absolute path, an empty or relative one is as good as unset.
struct XdgDirectories {
  std::optional<std::filesystem::path> dataHome;    // $XDG_DATA_HOME, else ~/.local/share
  std::optional<std::filesystem::path> configHome;  // $XDG_CONFIG_HOME, else ~/.config
  std::optional<std::filesystem::path> cacheHome;   // $XDG_CACHE_HOME, else ~/.cache
  std::optional<std::filesystem::path> runtime;     // $XDG_RUNTIME_DIR; there is no substitute

  /// A directory is absent when neither its variable nor an absolute HOME says where it is.
  [[nodiscard]] static XdgDirectories fromEnvironment(const EnvironmentLookup& lookup);
};

/// Where every application's data lie, the most important place first: the user's own, then
/// $XDG_DATA_DIRS, else /usr/local/share and /usr/share.
[[nodiscard]] std::vector<std::filesystem::path> dataDirectories(const EnvironmentLookup& lookup);

/// Where every application's settings lie, likewise: the user's own, then $XDG_CONFIG_DIRS, else
/// /etc/xdg.
[[nodiscard]] std::vector<std::filesystem::path> configDirectories(const EnvironmentLookup& lookup);

/// This process's environment; a missing HOME is taken from the user database. Not safe while
/// another thread changes the environment, which nothing in this program does.
[[nodiscard]] std::optional<std::string> processEnvironment(const char* name);

}  // namespace vantorel
