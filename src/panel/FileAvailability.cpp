#include "panel/FileAvailability.h"

#include <utility>

namespace vantorel {

FileAvailability::FileAvailability(Dispatch& dispatch, Probe probe)
    : dispatch_(dispatch),
      probe_(std::move(probe)),
      queue_(dispatch.serialQueue("com.vantorel.file-availability")) {}

FileAvailability::~FileAvailability() = default;

Availability FileAvailability::of(const ClipItem& item) {
  if (item.kind != ClipKind::files) return Availability::available;
  if (asked_.insert(item.id).second) {
    queue_->async([this, alive = std::weak_ptr(alive_), item, probe = probe_, &main = dispatch_] {
      const auto found = probe(item);
      main.async([this, alive, id = item.id, found] {
        if (!alive.expired()) store(id, found);
      });
    });
  }
  const auto known = known_.find(item.id);
  return known == known_.end() ? Availability::available : known->second;
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

void FileAvailability::store(const Uuid& id, Availability found) {
  known_[id] = found;
  answered_.insert(id);
  if (onAnswer) onAnswer(id, found);
}

}  // namespace vantorel
