// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "base/Lifetime.h"
#include "panel/RowCommands.h"
#include "platform/Dispatch.h"
#include "store/ClipStore.h"

namespace vantorel {

/// What keys and rows do to pins. Main thread.
class PinCommands {
 public:
  /// Both outlive this.
  PinCommands(ClipStore& store, Dispatch& dispatch) : store_(store), dispatch_(dispatch) {}

  /// The entry has become a pin, is none any more, or has another place among the pins.
  std::function<void(Uuid id)> onChange;
  /// There are as many pins as there may be.
  std::function<void()> onLimitReached;

  void toggle(Uuid id);
  /// By so many places among the pins, downwards if positive; nothing when there is no such place.
  void move(Uuid id, int delta);
  /// In a later turn, when the pointer has let go of the row for good.
  void drop(Uuid dragged, Uuid onto, DropPlace place);

 private:
  ClipStore& store_;
  Dispatch& dispatch_;
  Lifetime life_;
};

}  // namespace vantorel
