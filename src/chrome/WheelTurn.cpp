// SPDX-License-Identifier: MIT
#include "chrome/WheelTurn.h"

#include <cmath>
#include <string>

#include "base/Ascii.h"

namespace vantorel {
namespace {

constexpr double notch = 120;
constexpr double fingerLine = 16;  // points, where a finger's motion is told as a wheel's

}  // namespace

WheelTurn wheelTurn(const WheelReport& report, int lines, double line) {
  if (report.isFinger && report.pixels != 0) return {.distance = report.pixels};
  const double notches = report.eighths / notch;
  if (report.isFinger) return {.distance = notches * lines * fingerLine};
  return {.distance = notches * lines * line,
          .isStride = notches != 0 && notches == std::trunc(notches)};
}

bool isTouchpad(std::string_view deviceName) {
  const auto name = asciiLowerCased(deviceName);
  return name.find("touchpad") != std::string::npos || name.find("trackpad") != std::string::npos;
}

}  // namespace vantorel
