// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string_view>

namespace vantorel::bench {

using Clock = std::chrono::steady_clock;

[[noreturn]] void failWaiting(std::string_view what);
void restBetweenLooks();

/// Waits until `condition` holds, looking every half millisecond; throws with `what` after 10 s.
template <typename Condition>
void waitFor(std::string_view what, const Condition& condition) {
  const auto deadline = Clock::now() + std::chrono::seconds(10);
  while (!condition()) {
    if (Clock::now() > deadline) failWaiting(what);
    restBetweenLooks();
  }
}

[[nodiscard]] inline double milliseconds(Clock::duration duration) {
  return std::chrono::duration<double, std::milli>(duration).count();
}

}  // namespace vantorel::bench
