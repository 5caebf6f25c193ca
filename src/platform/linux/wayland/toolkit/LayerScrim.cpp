// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/toolkit/LayerScrim.h"

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
    scrim(self).left();
  }
  static void moved(void* self, wl_pointer* /*pointer*/, std::uint32_t /*time*/, wl_fixed_t x,
                    wl_fixed_t y) {
    scrim(self).at_ = scrim(self).origin_ + pointOf(x, y);
  }
  static void pressed(void* data, wl_pointer* /*pointer*/, std::uint32_t /*serial*/,
                      std::uint32_t /*time*/, std::uint32_t /*button*/, std::uint32_t state) {
    auto& self = scrim(data);
    if (self.over_ != Over::scrim) return;
    if (state == WL_POINTER_BUTTON_STATE_PRESSED) {
      ++self.heldButtons_;
      self.pressed(self.at_);
    } else if (self.heldButtons_ > 0) {
      --self.heldButtons_;
      self.goIfFolded();
    }
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

  static void touched(void* data, wl_touch* /*touch*/, std::uint32_t /*serial*/,
                      std::uint32_t /*time*/, wl_surface* surface, std::int32_t /*finger*/,
                      wl_fixed_t x, wl_fixed_t y) {
    const auto* const part = scrim(data).partOf(surface);
    if (part != nullptr) scrim(data).pressed(part->origin + pointOf(x, y));
  }
  static constexpr wl_touch_listener touch = [] {
    wl_touch_listener all{};
    all.down = touched;
    all.up = [](void* /*self*/, wl_touch* /*touch*/, std::uint32_t /*serial*/,
                std::uint32_t /*time*/, std::int32_t /*finger*/) {};
    all.motion = [](void* /*self*/, wl_touch* /*touch*/, std::uint32_t /*time*/,
                    std::int32_t /*finger*/, wl_fixed_t /*x*/, wl_fixed_t /*y*/) {};
    all.frame = [](void* /*self*/, wl_touch* /*touch*/) {};
    all.cancel = [](void* /*self*/, wl_touch* /*touch*/) {};
    return all;
  }();

  static void hasPointer(LayerScrim& self, wl_seat* seat, bool has) {
    if (has == (self.pointer_ != nullptr)) return;
    self.left();
    if (has) {
      self.pointer_ = wl_seat_get_pointer(seat);
      wl_pointer_add_listener(self.pointer_, &pointer, &self);
    } else {
      wl_pointer_destroy(std::exchange(self.pointer_, nullptr));
    }
  }
  static void hasTouch(LayerScrim& self, wl_seat* seat, bool has) {
    if (has == (self.touch_ != nullptr)) return;
    if (has) {
      self.touch_ = wl_seat_get_touch(seat);
      wl_touch_add_listener(self.touch_, &touch, &self);
    } else {
      wl_touch_destroy(std::exchange(self.touch_, nullptr));
    }
  }
  static constexpr wl_seat_listener seat{
      [](void* self, wl_seat* seat, std::uint32_t capabilities) {
        hasPointer(scrim(self), seat, (capabilities & WL_SEAT_CAPABILITY_POINTER) != 0);
        hasTouch(scrim(self), seat, (capabilities & WL_SEAT_CAPABILITY_TOUCH) != 0);
      },
      [](void* /*self*/, wl_seat* /*seat*/, const char* /*name*/) {}};
};

LayerScrim::LayerScrim(ToolkitCompositor& compositor) : compositor_(compositor) {
  if (canSpread()) wl_seat_add_listener(compositor.offers().seat, &Listeners::seat, this);
}

LayerScrim::~LayerScrim() {
  if (pointer_ != nullptr) wl_pointer_destroy(pointer_);
  if (touch_ != nullptr) wl_touch_destroy(touch_);
}

bool LayerScrim::canSpread() const {
  const auto& offers = compositor_.offers();
  return offers.seat != nullptr && offers.viewports != nullptr &&
         compositor_.transparentPixel() != nullptr;
}

void LayerScrim::spread() {
  if (!canSpread()) return;
  isSpread_ = true;
  if (!parts_.empty()) return;
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
  isSpread_ = false;
  goIfFolded();
}

void LayerScrim::goIfFolded() {
  if (isSpread_ || heldButtons_ > 0) return;
  parts_.clear();
  leftOut_.clear();
  if (over_ == Over::scrim) over_ = Over::others;
}

void LayerScrim::leaveOut(const std::vector<QRect>& frames) {
  if (parts_.empty() || frames == leftOut_) return;
  leftOut_ = frames;
  for (const auto& part : parts_) {
    auto inside = frames;
    for (auto& each : inside) each.translate(-part.origin);
    part.surface->leaveOut(inside);
  }
}

const LayerScrim::Part* LayerScrim::partOf(const wl_surface* surface) const {
  const auto found = std::find_if(parts_.begin(), parts_.end(), [surface](const Part& each) {
    return each.surface->surface() == surface;
  });
  return found == parts_.end() ? nullptr : &*found;
}

void LayerScrim::entered(const wl_surface* surface, QPoint at) {
  const auto* const part = partOf(surface);
  over_ = part == nullptr ? Over::ownWindow : Over::scrim;
  if (part == nullptr) return;
  origin_ = part->origin;
  at_ = origin_ + at;
}

void LayerScrim::left() {
  over_ = Over::others;
  heldButtons_ = 0;
  goIfFolded();
}

Point LayerScrim::pointer() const {
  if (over_ == Over::others) return unknownPlace;
  const QPoint at = over_ == Over::scrim ? at_ : QCursor::pos();
  return {static_cast<double>(at.x()), static_cast<double>(at.y())};
}

void LayerScrim::pressed(QPoint at) {
  if (!isSpread_ || (onPress && onPress(at))) return;
  observers_.notify();
  if (afterPress) afterPress();
}

std::unique_ptr<Observation> LayerScrim::addGlobalMouseDownMonitor(std::function<void()> handler) {
  return canSpread() ? observers_.add(std::move(handler)) : nullptr;
}

}  // namespace vantorel
