// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WindowNumber.h"

namespace vantorel {

/// Where this program's windows stand among the others of a desktop. Main thread.
class WindowSpaces {
 public:
  virtual ~WindowSpaces() = default;

  /// Has a window of this program that is not shown now come up on whichever virtual desktop is
  /// looked at then, and stay in sight when the user goes to another one. Lasts until the window is
  /// hidden the next time. Harmless where there is one desktop only.
  virtual void joinAll(WindowNumber window) const = 0;

  /// Gives the keyboard to a window of this program that is shown, also while another program has
  /// it: the user has just asked for that, but not by a key that this program has seen.
  virtual void bringForward(WindowNumber window) const = 0;
};

}  // namespace vantorel
