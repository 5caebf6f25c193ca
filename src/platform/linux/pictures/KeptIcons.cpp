#include "platform/linux/pictures/KeptIcons.h"

namespace vantorel {

std::optional<SharedBitmap> KeptIcons::find(const std::string& name) {
  const std::lock_guard lock(mutex_);
  const auto found = places_.find(name);
  if (found == places_.end()) return std::nullopt;
  entries_.splice(entries_.begin(), entries_, found->second);
  return found->second->second;
}

std::uint64_t KeptIcons::generation() const {
  const std::lock_guard lock(mutex_);
  return generation_;
}

void KeptIcons::keep(const std::string& name, SharedBitmap picture, std::uint64_t generation) {
  const std::lock_guard lock(mutex_);
  if (generation != generation_ || places_.contains(name)) return;
  entries_.emplace_front(name, std::move(picture));
  places_.emplace(name, entries_.begin());
  if (entries_.size() <= most_) return;
  places_.erase(entries_.back().first);
  entries_.pop_back();
}

void KeptIcons::clear() {
  const std::lock_guard lock(mutex_);
  places_.clear();
  entries_.clear();
  ++generation_;
}

}  // namespace vantorel
