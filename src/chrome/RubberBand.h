// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

/// How a list gives way when it is pushed beyond its ends. Lengths in points, from the top.
namespace vantorel::RubberBand {

/// The furthest that a list is displaced.
inline constexpr double reach = 26;

/// A turn of the wheel and what it has come to.
struct Push {
  double delta = 0;   // of the wheel; positive towards the top
  double before = 0;  // where the list was scrolled to
  double after = 0;   // and where it is now
  double viewHeight = 0;
  double documentHeight = 0;
};

/// What a push against an end does.
struct Bounce {
  double displacement = 0;  // to be added to the list's; positive downwards
  bool atEnd = false;       // below the last row there is something to be seen
  friend bool operator==(const Bounce&, const Bounce&) = default;
};

/// Absent when the push has scrolled the list, or was none.
[[nodiscard]] std::optional<Bounce> bounce(const Push& push);

/// The displacement after one more bounce.
[[nodiscard]] double displaced(double displacement, const Bounce& bounce);

}  // namespace vantorel::RubberBand
