// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>

#include "program/Screen.h"

namespace vantorel::bench {

/// Tells when a window with a given title showed what it was to show. It notes every damage to the
/// window with a picture of it, waits until nothing changes any more, and answers the first moment
/// at which the picture was the final one. The moment is read when the X server reports the damage,
/// so it is late by one trip from the server, some 0.1 ms, and never early.
class PaintWatch {
 public:
  PaintWatch(const Screen& screen, std::string title);

  /// Begins to watch windows made from now on, and the one that has the title already.
  void begin();

  /// Runs `act`, which answers the moment that counts as the beginning, and answers the
  /// milliseconds from then until the final picture. Throws when nothing was painted within 5 s.
  double measure(const std::function<Clock::time_point()>& act);

 private:
  void watch(xcb_window_t window);
  [[nodiscard]] bool isOurs(xcb_window_t window);

  const Screen& screen_;
  std::string title_;
  std::map<xcb_window_t, bool> watched_;  // and whether it is known to carry the title
};

}  // namespace vantorel::bench
