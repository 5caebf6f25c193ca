// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QRect>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/EventMonitors.h"
#include "platform/Observers.h"
#include "platform/Screens.h"
#include "platform/linux/wayland/toolkit/BareSurface.h"

struct wl_pointer;
struct wl_touch;

namespace vantorel {

/// What lies, unseen, over the windows of all other programs while one of ours has the keyboard. It
/// takes the presses that are meant for them, of any button or finger, which is the only way to
/// hear of them, and tells where the pointer is. Without it no press elsewhere is told. Main
/// thread.
class LayerScrim : public EventMonitors {
 public:
  /// `compositor` outlives this.
  explicit LayerScrim(ToolkitCompositor& compositor);
  ~LayerScrim() override;
  LayerScrim(const LayerScrim&) = delete;
  LayerScrim& operator=(const LayerScrim&) = delete;

  /// Whoever it is spread out for hears of a press, and of its place on the desktop, instead of
  /// everybody else if it answers true.
  std::function<bool(QPoint)> onPress;
  /// After everybody has heard of a press.
  std::function<void()> afterPress;

  void spread();
  /// A button that is still down on it comes up there, too: whoever lies below might take even that
  /// for a click.
  void fold();
  /// Has it leave presses within these frames, in points of the desktop, to what lies there.
  void leaveOut(const std::vector<QRect>& frames);

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
  [[nodiscard]] const Part* partOf(const wl_surface* surface) const;
  void entered(const wl_surface* surface, QPoint at);
  void left();
  void pressed(QPoint at);
  void goIfFolded();

  ToolkitCompositor& compositor_;
  ChangeObservers observers_;
  std::vector<Part> parts_;
  std::vector<QRect> leftOut_;
  bool isSpread_ = false;
  int heldButtons_ = 0;            // of those that went down on it
  wl_pointer* pointer_ = nullptr;  // while the seat has one
  wl_touch* touch_ = nullptr;      // likewise
  Over over_ = Over::others;
  QPoint origin_;  // of the part that the pointer is over
  QPoint at_;      // of the desktop, while it is over one
};

}  // namespace vantorel
