// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/EventMonitors.h"
#include "platform/Observers.h"
#include "platform/Screens.h"
#include "platform/linux/wayland/toolkit/BareSurface.h"

struct wl_pointer;

namespace vantorel {

/// What lies, unseen, between this program's windows and those of all others while one of ours has
/// the keyboard. It takes the presses that are meant for others, which is the only way to hear of
/// them, and tells where the pointer is. Without it no press elsewhere is told. Main thread.
class LayerScrim : public EventMonitors {
 public:
  /// `compositor` outlives this.
  explicit LayerScrim(ToolkitCompositor& compositor);
  ~LayerScrim() override;
  LayerScrim(const LayerScrim&) = delete;
  LayerScrim& operator=(const LayerScrim&) = delete;

  /// Whoever it is spread out for hears of a press instead of everybody else if it answers true.
  std::function<bool()> onPress;
  /// After everybody has heard of a press.
  std::function<void()> afterPress;

  void spread();
  void fold();

  /// Where the pointer is, as long as it is over this or over a window of this program.
  [[nodiscard]] Point pointer() const;

  [[nodiscard]] std::unique_ptr<Observation> addGlobalMouseDownMonitor(
      std::function<void()> handler) override;

 private:
  struct Listeners;
  struct Part {
    QPoint origin;  // of its output
    std::unique_ptr<BareSurface> surface;
  };
  enum class Over { others, scrim, ownWindow };

  [[nodiscard]] bool canSpread() const;
  void entered(const wl_surface* surface, QPoint at);
  void pressed();

  ToolkitCompositor& compositor_;
  ChangeObservers observers_;
  std::vector<Part> parts_;
  wl_pointer* pointer_ = nullptr;  // while the seat has one
  Over over_ = Over::others;
  QPoint origin_;  // of the part that the pointer is over
  QPoint at_;      // of the desktop, while it is over one
};

}  // namespace vantorel
