// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace vantorel {

/// What a wheel, or a finger on a touchpad, reports at once. Towards the top is positive.
struct WheelReport {
  double eighths = 0;     // of a degree: a wheel with notches turns by 120 for each
  double pixels = 0;      // what a finger is to move; 0 where nobody knows
  bool isFinger = false;  // rather than a wheel
};

/// What it comes to in a list.
struct WheelTurn {
  double distance = 0;    // points towards the top
  bool isStride = false;  // whole notches, which are better made in a motion than in a leap

  friend bool operator==(const WheelTurn&, const WheelTurn&) = default;
};

/// How a list scrolls whose user wants so many lines to a notch, each of so many points. A finer
/// wheel reports parts of a notch, which come to the same in the end; a finger is followed.
[[nodiscard]] WheelTurn wheelTurn(const WheelReport& report, int lines, double line);

/// Whether a pointing device is one for fingers, by the name that the system has for it: X servers
/// say no more of one that scrolls.
[[nodiscard]] bool isTouchpad(std::string_view deviceName);

}  // namespace vantorel
