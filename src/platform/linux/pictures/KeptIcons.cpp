// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/KeptIcons.h"

#include <utility>

namespace vantorel {

std::optional<SharedBitmap> KeptIcons::find(const std::string& name) {
  const std::lock_guard lock(mutex_);
  const SharedBitmap* const picture = pictures_.find(name);
  return picture != nullptr ? std::optional(*picture) : std::nullopt;
}

std::uint64_t KeptIcons::generation() const {
  const std::lock_guard lock(mutex_);
  return generation_;
}

void KeptIcons::keep(const std::string& name, SharedBitmap picture, std::uint64_t generation) {
  const std::lock_guard lock(mutex_);
  if (generation != generation_) return;
  pictures_.insert(name, std::move(picture));
  if (pictures_.size() > maxCount_) (void)pictures_.takeOldest();
}

void KeptIcons::clear() {
  const std::lock_guard lock(mutex_);
  pictures_.clear();
  ++generation_;
}

}  // namespace vantorel
