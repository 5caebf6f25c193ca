// SPDX-License-Identifier: MIT
#include "app/PauseExpiry.h"

#include <algorithm>

namespace vantorel {

void PauseExpiry::watch() {
  timer_.reset();
  if (!privacy_.isPaused()) return;
  const Seconds remaining = *privacy_.pausedUntil() - dispatch_.now();
  timer_ = dispatch_.after(std::min(remaining, longestWait), [this] { look(); });
}

void PauseExpiry::look() {
  watch();
  if (!timer_ && onExpired) onExpired();
}

}  // namespace vantorel
