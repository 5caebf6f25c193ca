#include "platform/linux/DesktopEntries.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "platform/linux/DesktopEntryScan.h"

namespace vantorel {

namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): read once, at the start
  return value ? value : "";
}

std::vector<std::string> parts(std::string_view list) {
  std::vector<std::string> result;
  while (!list.empty()) {
    const auto colon = list.find(':');
    if (colon != 0) result.emplace_back(list.substr(0, colon));
    list.remove_prefix(colon == std::string_view::npos ? list.size() : colon + 1);
  }
  return result;
}

std::string firstSet(std::initializer_list<const char*> names) {
  for (const auto* name : names) {
    if (auto value = environment(name); !value.empty()) return value;
  }
  return {};
}

std::vector<std::string> localesFromEnvironment() {
  const auto messages = desktopEntryLocales(firstSet({"LC_ALL", "LC_MESSAGES", "LANG"}));
  if (messages.empty()) return {};
  std::vector<std::string> result;
  for (const auto& language : parts(environment("LANGUAGE"))) {
    const auto suffixes = desktopEntryLocales(language);
    result.insert(result.end(), suffixes.begin(), suffixes.end());
  }
  result.insert(result.end(), messages.begin(), messages.end());
  return result;
}

}  // namespace

DesktopEntryPlaces DesktopEntryPlaces::fromEnvironment() {
  auto home = environment("XDG_DATA_HOME");
  if (home.empty() || home.front() != '/') home = environment("HOME") + "/.local/share";
  auto system = environment("XDG_DATA_DIRS");
  if (system.empty()) system = "/usr/local/share:/usr/share";
  DesktopEntryPlaces places;
  places.directories.push_back(std::filesystem::path(home) / "applications");
  for (const auto& directory : parts(system)) {
    if (directory.front() != '/') continue;
    places.directories.push_back(std::filesystem::path(directory) / "applications");
  }
  places.locales = localesFromEnvironment();
  return places;
}

DesktopEntries::DesktopEntries(DesktopEntryPlaces places)
    : places_(std::move(places)), index_(std::make_shared<const DesktopEntryIndex>()) {}

std::shared_ptr<const DesktopEntryIndex> DesktopEntries::index() const {
  const std::lock_guard lock(mutex_);
  return index_;
}

bool DesktopEntries::isUnchanged() const {
  return everRead_ && std::all_of(stamps_.begin(), stamps_.end(), [](const auto& stamp) {
           return changeTime(stamp.first) == stamp.second;
         });
}

bool DesktopEntries::refresh() {
  if (isUnchanged()) return false;
  auto scan = scanDesktopEntries(places_.directories, places_.locales);
  stamps_ = std::move(scan.directories);
  everRead_ = true;
  auto index = std::make_shared<const DesktopEntryIndex>(std::move(scan.entries));
  const std::lock_guard lock(mutex_);
  index_ = std::move(index);
  return true;
}

}  // namespace vantorel
