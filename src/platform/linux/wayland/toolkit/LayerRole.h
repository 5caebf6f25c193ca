// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QSize>
#include <cstdint>
#include <functional>

#include "base/Deadline.h"
#include "platform/linux/wayland/toolkit/SurfaceRole.h"
#include "platform/linux/wayland/toolkit/ToolkitCompositor.h"

struct zwlr_layer_surface_v1;

namespace vantorel {

/// A window above those of other programs, at a place of its own on one output. Main thread.
class LayerRole : public SurfaceRole {
 public:
  enum class Height { top, overlay };           // the second is above the first
  enum class Keyboard { none, whileItStands };  // all of it, whatever else is clicked
  struct Stand {
    Height height = Height::overlay;
    Keyboard keyboard = Keyboard::none;
    friend bool operator==(const Stand&, const Stand&) = default;
  };

  /// `surface` has no role yet. `compositor` outlives this.
  LayerRole(ToolkitCompositor& compositor, wl_surface* surface, QScreen& screen, const QRect& frame,
            Stand stand);
  ~LayerRole() override;
  LayerRole(const LayerRole&) = delete;
  LayerRole& operator=(const LayerRole&) = delete;

  /// The compositor has taken the window away, as with its output. May end this.
  std::function<void()> onClosed;

  /// Nothing may be drawn before. False when the compositor does not say so by then, and at once
  /// when it takes the window away instead.
  [[nodiscard]] bool waitUntilReady(Deadline deadline);
  void follow(const QRect& frame) override;
  void setStand(Stand stand);

 private:
  struct Listeners;
  void ask(const QRect& frame);

  ToolkitCompositor& compositor_;
  wl_surface* surface_;
  QPoint screenOrigin_;
  QSize size_;
  Stand stand_;
  zwlr_layer_surface_v1* role_;
  enum class State { asked, ready, closed } state_ = State::asked;
};

}  // namespace vantorel
