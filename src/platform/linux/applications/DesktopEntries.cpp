// SPDX-License-Identifier: MIT
#include "platform/linux/applications/DesktopEntries.h"

#include <algorithm>

#include "platform/linux/applications/DesktopEntryScan.h"
#include "platform/linux/xdg/KeyFile.h"

namespace vantorel {

namespace {

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
  for (const auto& language : listOf(lookup("LANGUAGE").value_or(""), ':')) {
    const auto suffixes = desktopEntryLocales(language);
    result.insert(result.end(), suffixes.begin(), suffixes.end());
  }
  result.insert(result.end(), messages.begin(), messages.end());
  return result;
}

}  // namespace

DesktopEntryPlaces DesktopEntryPlaces::fromEnvironment(const EnvironmentLookup& lookup) {
  DesktopEntryPlaces places;
  for (const auto& directory : dataDirectories(lookup)) {
    places.directories.push_back(directory / "applications");
  }
  places.locales = localesFrom(lookup);
  return places;
}

DesktopEntries::DesktopEntries(DesktopEntryPlaces places)
    : places_(std::move(places)), index_(std::make_shared<const DesktopEntryIndex>()) {}

std::shared_ptr<const DesktopEntryIndex> DesktopEntries::index() const {
  const std::lock_guard lock(mutex_);
  return index_;
}

std::optional<std::string> DesktopEntries::nameOf(const std::string& id) const {
  const auto known = index();
  const DesktopEntry* const entry = known->byId(id);
  if (entry == nullptr || entry->name.empty()) return std::nullopt;
  return entry->name;
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
