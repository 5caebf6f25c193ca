// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "base/Lifetime.h"
#include "panel/PanelServices.h"

namespace vantorel {

class HistoryPanelView;

/// Notices presses beside the panel that no other window of this program takes. Main thread.
class OutsideClicks {
 public:
  /// All outlive this.
  OutsideClicks(const PanelServices& services, HistoryPanelView& view)
      : dispatch_(services.dispatch),
        screens_(services.screens),
        monitors_(services.eventMonitors),
        view_(view) {}

  /// Whether a press just now concerns nobody.
  std::function<bool()> ignores;

  /// There was such a press while the panel was shown; called in a turn of its own.
  std::function<void()> onClick;

  void watch();
  void rest() { monitor_.reset(); }

 private:
  void pressed();

  Dispatch& dispatch_;
  const Screens& screens_;
  EventMonitors& monitors_;
  HistoryPanelView& view_;
  std::unique_ptr<Observation> monitor_;
  Lifetime life_;
};

}  // namespace vantorel
