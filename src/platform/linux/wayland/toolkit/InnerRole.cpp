// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/toolkit/InnerRole.h"

#include <wayland-client.h>

#include <QWindow>

namespace vantorel {

InnerRole::InnerRole(ToolkitCompositor& compositor, wl_surface* surface, QWindow& outer,
                     const QRect& frame)
    : compositor_(compositor),
      outer_(outer),
      outerSurface_(ToolkitCompositor::surfaceOf(outer)),
      role_(wl_subcompositor_get_subsurface(compositor.offers().innerSurfaces, surface,
                                            outerSurface_)) {
  wl_subsurface_set_desync(role_);
  place(frame);
}

InnerRole::~InnerRole() {
  wl_subsurface_destroy(role_);
  compositor_.flush();
}

// The place is a matter of the outer surface.
void InnerRole::place(const QRect& frame) {
  const auto corner = frame.topLeft() - outer_.position();
  wl_subsurface_set_position(role_, corner.x(), corner.y());
  wl_surface_commit(outerSurface_);
  compositor_.flush();
}

}  // namespace vantorel
