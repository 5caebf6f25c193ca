// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/wayland/toolkit/SurfaceRole.h"
#include "platform/linux/wayland/toolkit/ToolkitCompositor.h"

struct wl_subsurface;

namespace vantorel {

/// A window that belongs to another one of this program, such as a menu: it stands over that one,
/// goes along with it and is seen while that one is. Main thread.
class InnerRole : public SurfaceRole {
 public:
  /// `surface` has no role yet. `outer` has one, which outlives this, as `compositor` does.
  InnerRole(ToolkitCompositor& compositor, wl_surface* surface, QWindow& outer, const QRect& frame);
  ~InnerRole() override;
  InnerRole(const InnerRole&) = delete;
  InnerRole& operator=(const InnerRole&) = delete;

  void follow(const QRect& frame) override { place(frame); }

 private:
  void place(const QRect& frame);

  ToolkitCompositor& compositor_;
  QWindow& outer_;
  wl_surface* outerSurface_;
  wl_subsurface* role_;
};

}  // namespace vantorel
