// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/ToplevelList.h"

#include <algorithm>
#include <utility>

namespace vantorel {

WindowToken ToplevelList::add() {
  const std::lock_guard lock(mutex_);
  windows_.emplace_back().token = ++lastToken_;
  return lastToken_;
}

std::optional<Toplevel> ToplevelList::settle(const Toplevel& described) {
  const std::lock_guard lock(mutex_);
  for (auto& known : windows_) {
    if (known.token != described.token) continue;
    const bool comesToFront = described.isActive && !known.isActive;
    const auto lastInFront = comesToFront ? ++timesInFront_ : known.lastInFront;
    known = described;
    known.lastInFront = lastInFront;
    if (comesToFront) return known;
  }
  return std::nullopt;
}

void ToplevelList::remove(WindowToken token) {
  const std::lock_guard lock(mutex_);
  std::erase_if(windows_, [token](const Toplevel& window) { return window.token == token; });
}

void ToplevelList::forgetFront() {
  const std::lock_guard lock(mutex_);
  for (auto& window : windows_) window.isActive = false;
}

std::vector<Toplevel> ToplevelList::all() const {
  std::vector<Toplevel> found;
  {
    const std::lock_guard lock(mutex_);
    found = windows_;
  }
  std::sort(found.begin(), found.end(), [](const Toplevel& one, const Toplevel& other) {
    return one.lastInFront > other.lastInFront;
  });
  return found;
}

// While one window gives way to another both may say that they are active.
std::optional<Toplevel> ToplevelList::active() const {
  for (auto& window : all()) {
    if (window.isActive) return std::move(window);
  }
  return std::nullopt;
}

std::optional<Toplevel> ToplevelList::find(WindowToken token) const {
  for (auto& window : all()) {
    if (window.token == token) return std::move(window);
  }
  return std::nullopt;
}

}  // namespace vantorel
