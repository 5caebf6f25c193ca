// SPDX-License-Identifier: MIT
#include "platform/linux/xdg/XdgDirectories.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string_view>

#include "base/SplitText.h"

namespace vantorel {
namespace {

using Path = std::filesystem::path;

std::optional<Path> absolutePath(const EnvironmentLookup& lookup, const char* name) {
  const auto value = lookup(name);
  if (!value) return std::nullopt;
  Path path(*value);
  if (!path.is_absolute()) return std::nullopt;
  return path;
}

std::optional<Path> baseDirectory(const EnvironmentLookup& lookup, const char* name,
                                  const char* belowHome) {
  if (auto path = absolutePath(lookup, name)) return path;
  const auto home = absolutePath(lookup, "HOME");
  if (!home) return std::nullopt;
  return *home / belowHome;
}

std::optional<std::string> homeFromUserDatabase() {
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 4096> buffer{};
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found) {
    return std::nullopt;
  }
  return std::string(found->pw_dir);
}

/// `own`, then what `variable` lists, else `standard`.
std::vector<Path> searchPath(const std::optional<Path>& own, const EnvironmentLookup& lookup,
                             const char* variable, const char* standard) {
  std::vector<Path> result;
  if (own) result.push_back(*own);
  auto list = lookup(variable).value_or("");
  if (list.empty()) list = standard;
  for (const auto& part : splitList(list, ':')) {
    if (Path(part).is_absolute()) result.emplace_back(part);
  }
  return result;
}

}  // namespace

XdgDirectories XdgDirectories::fromEnvironment(const EnvironmentLookup& lookup) {
  return {.dataHome = baseDirectory(lookup, "XDG_DATA_HOME", ".local/share"),
          .configHome = baseDirectory(lookup, "XDG_CONFIG_HOME", ".config"),
          .cacheHome = baseDirectory(lookup, "XDG_CACHE_HOME", ".cache"),
          .runtime = absolutePath(lookup, "XDG_RUNTIME_DIR")};
}

std::vector<Path> dataDirectories(const EnvironmentLookup& lookup) {
  return searchPath(XdgDirectories::fromEnvironment(lookup).dataHome, lookup, "XDG_DATA_DIRS",
                    "/usr/local/share:/usr/share");
}

std::vector<Path> configDirectories(const EnvironmentLookup& lookup) {
  return searchPath(XdgDirectories::fromEnvironment(lookup).configHome, lookup, "XDG_CONFIG_DIRS",
                    "/etc/xdg");
}

std::optional<std::string> processEnvironment(const char* name) {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing in this program writes the environment
  if (const char* value = std::getenv(name)) return std::string(value);
  if (std::string_view(name) == "HOME") return homeFromUserDatabase();
  return std::nullopt;
}

}  // namespace vantorel
