// SPDX-License-Identifier: MIT
#include "platform/linux/start/AutostartLoginItem.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "base/AtomicFile.h"
#include "base/SplitText.h"
#include "platform/ApplicationId.h"
#include "platform/linux/xdg/KeyFile.h"

namespace vantorel {
namespace {

constexpr std::string_view replacedMark = " (deleted)";

bool canBeStarted(const std::string& program, const std::vector<std::string>& searchPath) {
  const auto isExecutable = [](const std::string& path) { return access(path.c_str(), X_OK) == 0; };
  if (program.find('/') != std::string::npos) return isExecutable(program);
  return std::any_of(searchPath.begin(), searchPath.end(), [&](const auto& directory) {
    return isExecutable(directory + "/" + program);
  });
}

std::filesystem::path entryIn(const std::filesystem::path& directory) {
  return directory / (std::string(applicationId::name) + ".desktop");
}

}  // namespace

AutostartPlaces AutostartPlaces::fromEnvironment(const EnvironmentLookup& lookup) {
  AutostartPlaces places;
  for (const auto& directory : configDirectories(lookup)) {
    places.systems.push_back(directory / "autostart");
  }
  if (XdgDirectories::fromEnvironment(lookup).configHome) {
    places.own = places.systems.front();
    places.systems.erase(places.systems.begin());
  }
  places.surroundings.currentDesktops = splitList(lookup("XDG_CURRENT_DESKTOP").value_or(""), ':');
  places.surroundings.programExists =
      [searchPath = splitList(lookup("PATH").value_or(""), ':')](const std::string& program) {
        return canBeStarted(program, searchPath);
      };
  return places;
}

AutostartLoginItem::AutostartLoginItem(FileSystem& files, AutostartPlaces places,
                                       std::filesystem::path program)
    : files_(files), places_(std::move(places)), program_(std::move(program)) {
  if (places_.own) path_ = entryIn(*places_.own);
}

LoginItem::Status AutostartLoginItem::status() {
  if (path_.empty() || program_.empty()) return Status::unavailable;
  const auto text = files_.exists(path_) ? read(path_) : machinesEntry();
  const bool starts = text && AutostartEntry(*text).startsAtLogin(places_.surroundings);
  return starts ? Status::enabled : Status::disabled;
}

bool AutostartLoginItem::registerItem() {
  if (path_.empty() || program_.empty()) return false;
  const bool hasOwn = files_.exists(path_);
  const auto existing = hasOwn ? read(path_) : std::string();
  if (!existing) return false;
  AutostartEntry entry(*existing);
  entry.enable(program_, places_.surroundings);
  return write(entry);
}

bool AutostartLoginItem::unregisterItem() {
  if (path_.empty()) return false;
  const auto existing = files_.exists(path_) ? read(path_) : machinesEntry();
  if (!existing) return !files_.exists(path_);  // nothing starts us
  AutostartEntry entry(*existing);
  entry.disable();
  return write(entry);
}

bool AutostartLoginItem::renewItem() {
  if (path_.empty() || program_.empty() || !files_.exists(path_)) return false;
  const auto existing = read(path_);
  if (!existing) return false;
  AutostartEntry entry(*existing);
  return entry.startsAtLogin(places_.surroundings) && entry.renew(program_) && write(entry);
}

std::optional<std::string> AutostartLoginItem::read(const std::filesystem::path& path) {
  const auto bytes = files_.readFile(path, maximumFileSize);
  if (!bytes) return std::nullopt;
  return std::string(textOf(*bytes));
}

std::optional<std::string> AutostartLoginItem::machinesEntry() {
  for (const auto& directory : places_.systems) {
    const auto path = entryIn(directory);
    if (files_.exists(path)) return read(path);
  }
  return std::nullopt;
}

bool AutostartLoginItem::write(const AutostartEntry& entry) {
  constexpr unsigned ownerOnly = 0700;
  if (files_.createDirectories(*places_.own, ownerOnly)) return false;
  const std::string text = entry.text();
  return !writeAtomically(files_, path_, bytesOf(text));
}

std::filesystem::path ownProgramPath() {
  std::error_code unreadable;
  auto path = std::filesystem::read_symlink("/proc/self/exe", unreadable).native();
  // An update has replaced the file by another of the same name.
  if (path.ends_with(replacedMark)) path.resize(path.size() - replacedMark.size());
  return path;
}

}  // namespace vantorel
