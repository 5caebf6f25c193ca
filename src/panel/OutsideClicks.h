#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "base/Lifetime.h"
#include "panel/PanelServices.h"

namespace vantorel {

class HistoryPanelView;

/// Notices presses beside the panel that no other window of this program takes. Main thread.
class OutsideClicks {
 public:
  /// All outlive this.
  OutsideClicks(PanelServices services, HistoryPanelView& view)
      : services_(std::move(services)), view_(view) {}

  /// There was such a press while the panel was shown; called in a turn of its own.
  std::function<void()> onClick;

  void watch();
  void rest() { monitor_.reset(); }

 private:
  void pressed();

  PanelServices services_;
  HistoryPanelView& view_;
  std::unique_ptr<Observation> monitor_;
  Lifetime life_;
};

}  // namespace vantorel
