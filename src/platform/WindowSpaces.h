#pragma once

#include "platform/WindowNumber.h"

namespace vantorel {

/// The virtual desktops among which a user spreads windows. Main thread.
class WindowSpaces {
 public:
  virtual ~WindowSpaces() = default;

  /// Has a window of this program that is not shown now come up on whichever virtual desktop is
  /// looked at then, and stay in sight when the user goes to another one. Lasts until the window is
  /// hidden the next time. Harmless where there is one desktop only.
  virtual void joinAll(WindowNumber window) const = 0;
};

}  // namespace vantorel
