// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace vantorel {

/// A side of the desktop that tells of its changes. Main thread.
class Announcer {
 public:
  virtual ~Announcer() = default;

  /// Whether every change is announced at present, so that whoever looks by itself could find
  /// nothing that it was not told.
  [[nodiscard]] virtual bool announcesEveryChange() const = 0;

  /// Called on the main queue when that may have become another answer. Replaces the previous
  /// handler; empty: none.
  virtual void setAnnouncingHandler(std::function<void()> handler) = 0;
};

}  // namespace vantorel
