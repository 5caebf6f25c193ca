// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/toolkit/LayerScrim.h"

#include <linux/input-event-codes.h>
#include <wayland-client.h>

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <utility>

namespace vantorel {
namespace {

QPoint pointOf(wl_fixed_t x, wl_fixed_t y) { return {wl_fixed_to_int(x), wl_fixed_to_int(y)}; }

}  // namespace

/// What the compositor calls.
struct LayerScrim::Listeners {
  static LayerScrim& scrim(void* self) { return *static_cast<LayerScrim*>(self); }

  static void entered(void* self, wl_pointer* /*pointer*/, std::uint32_t /*serial*/,
                      wl_surface* surface, wl_fixed_t x, wl_fixed_t y) {
    scrim(self).entered(surface, pointOf(x, y));
  }
  static void left(void* self, wl_pointer* /*pointer*/, std::uint32_t /*serial*/,
                   wl_surface* /*surface*/) {
    scrim(self).over_ = Over::others;
  }
  static void moved(void* self, wl_pointer* /*pointer*/, std::uint32_t /*time*/, wl_fixed_t x,
                    wl_fixed_t y) {
    scrim(self).at_ = scrim(self).origin_ + pointOf(x, y);
  }
  static void pressed(void* self, wl_pointer* /*pointer*/, std::uint32_t /*serial*/,
                      std::uint32_t /*time*/, std::uint32_t button, std::uint32_t state) {
    if (scrim(self).over_ != Over::scrim || state != WL_POINTER_BUTTON_STATE_PRESSED) return;
    if (button == BTN_LEFT || button == BTN_RIGHT) scrim(self).pressed();
  }
  static void scrolled(void* /*self*/, wl_pointer* /*pointer*/, std::uint32_t /*time*/,
                       std::uint32_t /*axis*/, wl_fixed_t /*value*/) {}
  /// The rest comes with later versions than the one that is spoken here.
  static constexpr wl_pointer_listener pointer = [] {
    wl_pointer_listener all{};
    all.enter = entered;
    all.leave = left;
    all.motion = moved;
    all.button = pressed;
    all.axis = scrolled;
    return all;
  }();

  static constexpr wl_seat_listener seat{
      [](void* data, wl_seat* seat, std::uint32_t capabilities) {
        auto& self = scrim(data);
        const bool hasPointer = (capabilities & WL_SEAT_CAPABILITY_POINTER) != 0;
        if (hasPointer == (self.pointer_ != nullptr)) return;
        self.over_ = Over::others;
        if (hasPointer) {
          self.pointer_ = wl_seat_get_pointer(seat);
          wl_pointer_add_listener(self.pointer_, &pointer, data);
        } else {
          wl_pointer_destroy(std::exchange(self.pointer_, nullptr));
        }
      },
      [](void* /*self*/, wl_seat* /*seat*/, const char* /*name*/) {}};
};

LayerScrim::LayerScrim(ToolkitCompositor& compositor) : compositor_(compositor) {
  if (canSpread()) wl_seat_add_listener(compositor.offers().seat, &Listeners::seat, this);
}

LayerScrim::~LayerScrim() {
  if (pointer_ != nullptr) wl_pointer_destroy(pointer_);
}

bool LayerScrim::canSpread() const {
  const auto& offers = compositor_.offers();
  return offers.seat != nullptr && offers.viewports != nullptr &&
         compositor_.transparentPixel() != nullptr;
}

void LayerScrim::spread() {
  if (!parts_.empty() || !canSpread()) return;
  using enum BareSurface::Extent;
  using enum BareSurface::Pointer;
  for (QScreen* screen : QGuiApplication::screens()) {
    auto* const output = ToolkitCompositor::outputOf(*screen);
    if (output == nullptr) continue;
    parts_.push_back({screen->geometry().topLeft(),
                      std::make_unique<BareSurface>(compositor_, output, wholeOutput, isTaken)});
  }
}

void LayerScrim::fold() {
  parts_.clear();
  if (over_ == Over::scrim) over_ = Over::others;
}

void LayerScrim::entered(const wl_surface* surface, QPoint at) {
  const auto part = std::find_if(parts_.begin(), parts_.end(), [surface](const Part& each) {
    return each.surface->surface() == surface;
  });
  over_ = part == parts_.end() ? Over::ownWindow : Over::scrim;
  if (over_ != Over::scrim) return;
  origin_ = part->origin;
  at_ = origin_ + at;
}

Point LayerScrim::pointer() const {
  if (over_ == Over::others) return unknownPlace;
  const QPoint at = over_ == Over::scrim ? at_ : QCursor::pos();
  return {static_cast<double>(at.x()), static_cast<double>(at.y())};
}

void LayerScrim::pressed() {
  if (onPress && onPress()) return;
  observers_.notify();
  if (afterPress) afterPress();
}

std::unique_ptr<Observation> LayerScrim::addGlobalMouseDownMonitor(std::function<void()> handler) {
  return canSpread() ? observers_.add(std::move(handler)) : nullptr;
}

}  // namespace vantorel
