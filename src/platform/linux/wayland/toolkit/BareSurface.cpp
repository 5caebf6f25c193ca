// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/toolkit/BareSurface.h"

#include <layer-shell-client.h>
#include <viewporter-client.h>
#include <wayland-client.h>

namespace vantorel {
namespace {

constexpr auto usage = "vantorel";

}  // namespace

/// What the compositor calls.
struct BareSurface::Listeners {
  static void entered(void* self, wl_surface* /*surface*/, wl_output* output) {
    static_cast<BareSurface*>(self)->entered_ = output;
  }
  static void left(void* /*self*/, wl_surface* /*surface*/, wl_output* /*output*/) {}
  /// The rest comes with later versions than the one that is spoken here.
  static constexpr wl_surface_listener surface = [] {
    wl_surface_listener all{};
    all.enter = entered;
    all.leave = left;
    return all;
  }();
  static constexpr zwlr_layer_surface_v1_listener role{
      [](void* self, zwlr_layer_surface_v1* role, std::uint32_t serial, std::uint32_t width,
         std::uint32_t height) {
        zwlr_layer_surface_v1_ack_configure(role, serial);
        static_cast<BareSurface*>(self)->show(static_cast<int>(width), static_cast<int>(height));
      },
      [](void* /*self*/, zwlr_layer_surface_v1* /*role*/) {}};
};

BareSurface::BareSurface(ToolkitCompositor& compositor, wl_output* output, Extent extent,
                         Pointer pointer)
    : compositor_(compositor),
      surface_(wl_compositor_create_surface(compositor.offers().surfaces)),
      role_(zwlr_layer_shell_v1_get_layer_surface(compositor.offers().layers, surface_, output,
                                                  ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, usage)) {
  wl_surface_add_listener(surface_, &Listeners::surface, this);
  zwlr_layer_surface_v1_add_listener(role_, &Listeners::role, this);
  constexpr int overBarsToo = -1;
  zwlr_layer_surface_v1_set_exclusive_zone(role_, overBarsToo);
  if (extent == Extent::wholeOutput) {
    viewport_ = wp_viewporter_get_viewport(compositor.offers().viewports, surface_);
    zwlr_layer_surface_v1_set_anchor(
        role_, ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
                   ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT);
  } else {
    zwlr_layer_surface_v1_set_size(role_, 1, 1);
  }
  if (pointer == Pointer::passes) compositor.letPointerPass(surface_);
  wl_surface_commit(surface_);
  compositor_.flush();
}

BareSurface::~BareSurface() {
  if (viewport_ != nullptr) wp_viewport_destroy(viewport_);
  zwlr_layer_surface_v1_destroy(role_);
  wl_surface_destroy(surface_);
  compositor_.flush();
}

void BareSurface::leaveOut(const std::vector<QRect>& frames) {
  constexpr int everything = 1 << 20;  // points, more than an output has
  auto* const taken = wl_compositor_create_region(compositor_.offers().surfaces);
  wl_region_add(taken, 0, 0, everything, everything);
  for (const auto& each : frames) {
    wl_region_subtract(taken, each.x(), each.y(), each.width(), each.height());
  }
  wl_surface_set_input_region(surface_, taken);
  wl_region_destroy(taken);
  if (!isShown_) return;
  wl_surface_commit(surface_);
  compositor_.flush();
}

void BareSurface::show(int width, int height) {
  isShown_ = true;
  if (viewport_ != nullptr) wp_viewport_set_destination(viewport_, width, height);
  wl_surface_attach(surface_, compositor_.transparentPixel(), 0, 0);
  wl_surface_damage(surface_, 0, 0, width, height);
  wl_surface_commit(surface_);
  compositor_.flush();
}

}  // namespace vantorel
