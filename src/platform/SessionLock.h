// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "platform/Observation.h"

namespace vantorel {

/// Whether the user's screen is locked, so far as the desktop tells. A screen that is only blanked
/// counts as locked: nobody sees what would be shown or typed there. Main thread.
class SessionLock {
 public:
  virtual ~SessionLock() = default;

  /// False where nobody tells, and until somebody has.
  [[nodiscard]] virtual bool isLocked() const = 0;
  /// Calls `changed` on the main thread after the answer has changed, until the result is
  /// destroyed.
  [[nodiscard]] virtual std::unique_ptr<Observation> observe(
      std::function<void()> changed) const = 0;
};

}  // namespace vantorel
