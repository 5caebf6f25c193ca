// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/wayland/toolkit/LayerScrim.h"
#include "platform/qt/QtScreens.h"

namespace vantorel {

/// The screens of a compositor. The main one is the one in use, as the compositor sees it; the
/// pointer is known while it is over a window of this program or the scrim.
class WaylandScreens : public QtScreens {
 public:
  /// Both outlive this.
  WaylandScreens(ToolkitCompositor& compositor, const LayerScrim& scrim)
      : compositor_(compositor), scrim_(scrim) {}

  [[nodiscard]] std::optional<Screen> mainScreen() const override;
  [[nodiscard]] Point mouseLocation() const override { return scrim_.pointer(); }

 private:
  ToolkitCompositor& compositor_;
  const LayerScrim& scrim_;
};

}  // namespace vantorel
