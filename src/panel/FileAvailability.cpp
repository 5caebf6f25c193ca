// SPDX-License-Identifier: MIT
#include "panel/FileAvailability.h"

#include <algorithm>
#include <utility>

namespace vantorel {

Availability availability(const ClipItem& item, FileSystem& files) {
  if (item.kind != ClipKind::files) return Availability::available;
  const auto& paths = item.filePaths;
  const auto gone = std::find_if_not(paths.begin(), paths.end(),
                                     [&](const auto& path) { return files.isWithinReach(path); });
  if (gone == paths.end()) return Availability::available;
  return gone == paths.begin() ? Availability::unavailable : Availability::incomplete;
}

FileAvailability::FileAvailability(Dispatch& dispatch, Probe probe)
    : probe_(std::move(probe)), lanes_(dispatch) {}

FileAvailability::~FileAvailability() = default;

Availability FileAvailability::of(const ClipItem& item) {
  if (item.kind != ClipKind::files) return Availability::available;
  if (asked_.insert(item.id).second) {
    const auto [place, isFirst] = underWay_.try_emplace(item.id);
    if (isFirst) {
      look(item);
    } else {
      place->second = item;
    }
  }
  const auto known = known_.find(item.id);
  return known == known_.end() ? Availability::available : known->second;
}

void FileAvailability::look(const ClipItem& item) {
  lanes_.ask([this, item, probe = probe_]() -> Work {
    const auto found = probe(item);
    return [this, id = item.id, found] { store(id, found); };
  });
}

bool FileAvailability::isAnswered(const ClipItem& item) const {
  return item.kind != ClipKind::files || answered_.count(item.id) != 0;
}

void FileAvailability::lookAfresh(const std::vector<ClipItem>& items) {
  asked_.clear();
  answered_.clear();
  decltype(known_) kept;
  for (const auto& item : items) {
    if (const auto known = known_.find(item.id); known != known_.end()) kept.insert(*known);
  }
  known_ = std::move(kept);
}

void FileAvailability::store(Uuid id, Availability found) {
  const auto place = underWay_.find(id);
  const auto again = std::move(place->second);
  place->second.reset();
  known_[id] = found;
  if (again) {
    look(*again);
  } else {
    underWay_.erase(place);
    answered_.insert(id);
  }
  if (onAnswer) onAnswer(id, found);
}

}  // namespace vantorel
