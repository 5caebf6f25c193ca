// SPDX-License-Identifier: MIT
#include "platform/linux/applications/DesktopEntryIndex.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include "text/Unicode.h"

namespace vantorel {

namespace {

/// Programs that run other programs: their name says nothing about the application.
bool isInterpreter(std::string_view executable) {
  static constexpr std::array<std::string_view, 14> prefixes = {
      "python", "perl", "ruby", "node", "java", "bash", "dash",
      "sh",     "gjs",  "mono", "wine", "php",  "lua",  "electron"};
  for (const auto prefix : prefixes) {
    if (executable.substr(0, prefix.size()) != prefix) continue;
    const auto rest = executable.substr(prefix.size());
    if (rest.find_first_not_of("0123456789.-") == std::string_view::npos) return true;
  }
  return false;
}

}  // namespace

DesktopEntryIndex::DesktopEntryIndex(std::vector<DesktopEntry> entries)
    : entries_(std::move(entries)) {
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const auto& entry = entries_[i];
    const auto id = lowerCased(entry.id);
    ids_[id].push_back(i);
    const auto dot = id.rfind('.');
    if (dot != std::string::npos) lastParts_[id.substr(dot + 1)].push_back(i);
    if (!entry.startupWmClass.empty()) classes_[lowerCased(entry.startupWmClass)].push_back(i);
    if (!entry.executable.empty()) executables_[entry.executable].push_back(i);
  }
}

const DesktopEntry* DesktopEntryIndex::byId(std::string_view id) const {
  const auto found = ids_.find(lowerCased(id));
  if (found == ids_.end()) return nullptr;
  for (const auto position : found->second) {
    if (entries_[position].id == id) return &entries_[position];
  }
  return &entries_[found->second.front()];
}

const DesktopEntry* DesktopEntryIndex::best(const Names& names, const std::string& name,
                                            const WindowIdentity& identity) const {
  if (name.empty()) return nullptr;
  const auto found = names.find(lowerCased(name));
  if (found == names.end()) return nullptr;
  // Several entries may claim one class: the one that starts this very program is meant, else the
  // one that menus show, else the one that spells the class as the window does.
  const auto rank = [&](std::size_t position) {
    const auto& entry = entries_[position];
    return std::tuple(identity.executable.empty() || entry.executable != identity.executable,
                      entry.noDisplay, entry.startupWmClass != name && entry.id != name,
                      entry.execHasArguments, position);
  };
  const auto position =
      *std::min_element(found->second.begin(), found->second.end(),
                        [&](std::size_t a, std::size_t b) { return rank(a) < rank(b); });
  return &entries_[position];
}

const DesktopEntry* DesktopEntryIndex::byExecutable(const std::string& executable) const {
  if (executable.empty() || isInterpreter(executable)) return nullptr;
  const auto found = executables_.find(executable);
  if (found == executables_.end()) return nullptr;
  const auto& all = found->second;
  if (all.size() == 1) return &entries_[all.front()];
  // One program behind several entries: only an entry that starts it plainly stands for it.
  const DesktopEntry* plain = nullptr;
  for (const auto position : all) {
    const auto& entry = entries_[position];
    if (entry.execHasArguments || entry.noDisplay) continue;
    if (plain) return nullptr;
    plain = &entry;
  }
  return plain;
}

const DesktopEntry* DesktopEntryIndex::find(const WindowIdentity& identity) const {
  if (!identity.desktopFile.empty()) {
    if (const auto* entry = byId(identity.desktopFile)) return entry;
  }
  for (const auto* names : {&classes_, &ids_, &lastParts_}) {
    for (const auto* name : {&identity.wmClass, &identity.wmInstance}) {
      if (const auto* entry = best(*names, *name, identity)) return entry;
    }
  }
  return byExecutable(identity.executable);
}

}  // namespace vantorel
