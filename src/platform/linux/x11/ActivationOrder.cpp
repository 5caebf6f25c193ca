#include "platform/linux/x11/ActivationOrder.h"

#include <algorithm>

namespace vantorel {

namespace {

constexpr std::size_t maximumWindows = 256;  // far more than anybody remembers to go back to

}  // namespace

void ActivationOrder::note(std::uint32_t window) {
  const std::lock_guard lock(mutex_);
  std::erase(windows_, window);
  windows_.insert(windows_.begin(), window);
  if (windows_.size() > maximumWindows) windows_.pop_back();
}

std::size_t ActivationOrder::rank(std::uint32_t window) const {
  const std::lock_guard lock(mutex_);
  const auto found = std::find(windows_.begin(), windows_.end(), window);
  if (found == windows_.end()) return maximumWindows;
  return static_cast<std::size_t>(found - windows_.begin());
}

}  // namespace vantorel
