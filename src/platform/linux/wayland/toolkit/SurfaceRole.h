// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

namespace vantorel {

/// What makes a surface of the toolkit's one that is seen, and where. It goes before its surface
/// does, and a surface has one role in its life. Main thread.
class SurfaceRole {
 public:
  virtual ~SurfaceRole() = default;

  /// The window has another frame, in points of the whole desktop.
  virtual void follow(const QRect& frame) = 0;
};

}  // namespace vantorel
