// SPDX-License-Identifier: MIT
#include "chrome/RubberBand.h"

#include <algorithm>
#include <cmath>

namespace vantorel::RubberBand {
namespace {

constexpr double minDelta = 0.1;
constexpr double scrolled = 0.5;  // a list that moved so much has scrolled
constexpr double give = 0.38;     // of each point pushed

}  // namespace

std::optional<Bounce> bounce(const Push& push) {
  if (std::abs(push.after - push.before) >= scrolled) return std::nullopt;
  if (std::abs(push.delta) <= minDelta) return std::nullopt;
  const double last = std::max(push.documentHeight - push.viewHeight, 0.0);
  const bool atTop = push.after <= scrolled;
  const bool atEnd = push.after >= last - scrolled;
  if (!atTop && !atEnd) return std::nullopt;
  const double length = std::min(std::abs(push.delta) * give, reach);
  // A list that is seen whole is at its top: it gives way downwards.
  return Bounce{atTop ? length : -length, atEnd};
}

double displaced(double displacement, const Bounce& bounce) {
  return std::clamp(displacement + bounce.displacement, -reach, reach);
}

}  // namespace vantorel::RubberBand
