// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <vector>

#include "platform/linux/wayland/toolkit/ToolkitCompositor.h"

struct wp_viewport;
struct zwlr_layer_surface_v1;

namespace vantorel {

/// A surface without a window of the toolkit: one pixel that nothing is seen of, perhaps stretched
/// over an output, above the windows of others, those that fill the output too. Compositors differ
/// in whether it is above or below this program's windows. It never has the keyboard. Main thread.
class BareSurface {
 public:
  enum class Extent { onePixel, wholeOutput };
  enum class Pointer { passes, isTaken };

  /// It is there a little later. `output` may be null: the compositor chooses one. `compositor`
  /// outlives this, and has viewports for a whole output.
  BareSurface(ToolkitCompositor& compositor, wl_output* output, Extent extent, Pointer pointer);
  ~BareSurface();
  BareSurface(const BareSurface&) = delete;
  BareSurface& operator=(const BareSurface&) = delete;

  [[nodiscard]] const wl_surface* surface() const { return surface_; }
  /// The output that it is on; null until that is known.
  [[nodiscard]] const wl_output* entered() const { return entered_; }

  /// The pointer and fingers pass through it within these frames, in points of its output.
  void leaveOut(const std::vector<QRect>& frames);

 private:
  struct Listeners;
  void show(int width, int height);

  ToolkitCompositor& compositor_;
  wl_surface* surface_;
  wp_viewport* viewport_ = nullptr;
  zwlr_layer_surface_v1* role_;
  const wl_output* entered_ = nullptr;
  bool isShown_ = false;
};

}  // namespace vantorel
