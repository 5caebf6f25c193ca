#include "platform/linux/DesktopEntries.h"

#include <algorithm>
#include <string_view>

#include "platform/linux/DesktopEntryScan.h"

namespace vantorel {

namespace {

std::vector<std::string> parts(std::string_view list) {
  std::vector<std::string> result;
  while (!list.empty()) {
    const auto colon = list.find(':');
    if (colon != 0) result.emplace_back(list.substr(0, colon));
    list.remove_prefix(colon == std::string_view::npos ? list.size() : colon + 1);
  }
  return result;
}

std::vector<std::string> localesFrom(const EnvironmentLookup& lookup) {
  std::string locale;
  for (const auto* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    locale = lookup(name).value_or("");
    if (!locale.empty()) break;
  }
  const auto messages = desktopEntryLocales(locale);
  // A list of languages counts only where there is a locale at all.
  if (messages.empty()) return {};
  std::vector<std::string> result;
  for (const auto& language : parts(lookup("LANGUAGE").value_or(""))) {
    const auto suffixes = desktopEntryLocales(language);
    result.insert(result.end(), suffixes.begin(), suffixes.end());
  }
  result.insert(result.end(), messages.begin(), messages.end());
  return result;
}

}  // namespace

DesktopEntryPlaces DesktopEntryPlaces::fromEnvironment(const EnvironmentLookup& lookup) {
  DesktopEntryPlaces places;
  const auto add = [&places](const std::filesystem::path& directory) {
    if (directory.is_absolute()) places.directories.push_back(directory / "applications");
  };
  if (const auto home = XdgDirectories::fromEnvironment(lookup).dataHome) add(*home);
  auto system = lookup("XDG_DATA_DIRS").value_or("");
  if (system.empty()) system = "/usr/local/share:/usr/share";
  for (const auto& directory : parts(system)) add(directory);
  places.locales = localesFrom(lookup);
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
