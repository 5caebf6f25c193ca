// SPDX-License-Identifier: MIT
#include "panel/PinCommands.h"

#include <algorithm>
#include <vector>

namespace vantorel {

void PinCommands::toggle(Uuid id) {
  switch (store_.togglePinned(id)) {
    case PinResult::toggled:
      if (onChange) onChange(id);
      break;
    case PinResult::limitReached:
      if (onLimitReached) onLimitReached();
      break;
    case PinResult::notFound:
      break;
  }
}

void PinCommands::move(Uuid id, int delta) {
  std::vector<Uuid> pins;
  for (const auto& item : store_.items()) {
    if (item.pinned()) pins.push_back(item.id);
  }
  // What is no pin stands behind the last of them; the store moves pins alone.
  const auto position = std::find(pins.begin(), pins.end(), id);
  const auto target = (position - pins.begin()) + delta;
  if (target < 0 || target >= static_cast<std::ptrdiff_t>(pins.size())) return;
  const bool moved = store_.movePinned(id, pins[static_cast<std::size_t>(target)], delta < 0);
  if (moved && onChange) onChange(id);
}

void PinCommands::drop(Uuid dragged, Uuid onto, DropPlace place) {
  dispatch_.async(life_.guard([this, dragged, onto, place] {
    const bool moved = store_.movePinned(dragged, onto, place == DropPlace::before);
    if (moved && onChange) onChange(dragged);
  }));
}

}  // namespace vantorel
