// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace vantorel {

/// Which window of this program has the keyboard, where a window gets all of it or nothing: the
/// one shown last, and after it the one that had it before. Pure; windows are known by their
/// addresses alone.
class KeyboardOrder {
 public:
  using Window = const void*;

  /// The one that has it; null while none does.
  [[nodiscard]] Window holder() const { return isHeld_ ? windows_.back().window : nullptr; }

  /// The window is shown, or pressed while it is: it gets the keyboard.
  void take(Window window);
  /// The window is hidden. Who gave it the keyboard has it again, if that one is still shown.
  void drop(Window window);
  /// The user goes on elsewhere: nobody has it, nor gets it back.
  void release();

 private:
  struct Entry {
    Window window = nullptr;
    bool isFromBelow = false;  // the one before it in the list gave it the keyboard
  };

  std::vector<Entry> windows_;  // shown ones; the one that had the keyboard last is at the end
  bool isHeld_ = false;
};

}  // namespace vantorel
