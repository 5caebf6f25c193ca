// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/toolkit/LayerRole.h"

#include <layer-shell-client.h>
#include <wayland-client.h>

#include <QScreen>

namespace vantorel {
namespace {

constexpr auto usage = "vantorel";

std::uint32_t layerOf(LayerRole::Height height) {
  return height == LayerRole::Height::top ? ZWLR_LAYER_SHELL_V1_LAYER_TOP
                                          : ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY;
}

std::uint32_t interactivityOf(LayerRole::Keyboard keyboard) {
  return keyboard == LayerRole::Keyboard::none
             ? ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE
             : ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE;
}

}  // namespace

/// What the compositor calls.
struct LayerRole::Listeners {
  static constexpr zwlr_layer_surface_v1_listener role{
      [](void* self, zwlr_layer_surface_v1* role, std::uint32_t serial, std::uint32_t /*width*/,
         std::uint32_t /*height*/) {
        zwlr_layer_surface_v1_ack_configure(role, serial);
        auto& state = static_cast<LayerRole*>(self)->state_;
        if (state == State::asked) state = State::ready;
      },
      [](void* self, zwlr_layer_surface_v1* /*role*/) {
        static_cast<LayerRole*>(self)->state_ = State::closed;
        const auto closed = static_cast<LayerRole*>(self)->onClosed;
        if (closed) closed();
      }};
};

LayerRole::LayerRole(ToolkitCompositor& compositor, wl_surface* surface, QScreen& screen,
                     const QRect& frame, Stand stand)
    : compositor_(compositor),
      surface_(surface),
      screenOrigin_(screen.geometry().topLeft()),
      stand_(stand),
      role_(zwlr_layer_shell_v1_get_layer_surface(compositor.offers().layers, surface,
                                                  ToolkitCompositor::outputOf(screen),
                                                  layerOf(stand.height), usage)) {
  zwlr_layer_surface_v1_add_listener(role_, &Listeners::role, this);
  zwlr_layer_surface_v1_set_anchor(
      role_, ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT);
  constexpr int overBarsToo = -1;
  zwlr_layer_surface_v1_set_exclusive_zone(role_, overBarsToo);
  zwlr_layer_surface_v1_set_keyboard_interactivity(role_, interactivityOf(stand.keyboard));
  ask(frame);
  wl_surface_commit(surface_);
}

LayerRole::~LayerRole() {
  zwlr_layer_surface_v1_destroy(role_);
  compositor_.flush();
}

bool LayerRole::waitUntilReady(Deadline deadline) {
  return compositor_.waitUntil([this] { return state_ != State::asked; }, deadline) &&
         state_ == State::ready;
}

// A new size comes with the toolkit's next picture, which shows both at once.
void LayerRole::follow(const QRect& frame) {
  const bool hasMovedOnly = frame.size() == size_;
  ask(frame);
  if (!hasMovedOnly) return;
  wl_surface_commit(surface_);
  compositor_.flush();
}

void LayerRole::ask(const QRect& frame) {
  size_ = frame.size();
  const auto place = frame.topLeft() - screenOrigin_;
  zwlr_layer_surface_v1_set_margin(role_, place.y(), 0, 0, place.x());
  zwlr_layer_surface_v1_set_size(role_, static_cast<std::uint32_t>(size_.width()),
                                 static_cast<std::uint32_t>(size_.height()));
}

void LayerRole::setStand(Stand stand) {
  if (stand == stand_) return;
  stand_ = stand;
  zwlr_layer_surface_v1_set_layer(role_, layerOf(stand.height));
  zwlr_layer_surface_v1_set_keyboard_interactivity(role_, interactivityOf(stand.keyboard));
  wl_surface_commit(surface_);
  compositor_.flush();
}

}  // namespace vantorel
