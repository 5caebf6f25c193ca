// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Dispatch.h"
#include "platform/EventMonitors.h"

namespace vantorel {

/// Mouse presses anywhere, as the server reports them raw to the root window, even while another
/// program has grabbed the mouse. A connection and a thread exist only as long as a monitor does.
/// The server does not say whose window a press was in: presses in this program's own are told too,
/// but for those of which `isOurs`, asked on the main thread, says so.
class X11EventMonitors : public EventMonitors {
 public:
  /// `dispatch` outlives this and every monitor.
  explicit X11EventMonitors(Dispatch& dispatch, std::string display = {},
                            std::function<bool()> isOurs = {});

  [[nodiscard]] std::unique_ptr<Observation> addGlobalMouseDownMonitor(
      std::function<void()> handler) override;

 private:
  Dispatch& dispatch_;
  std::string display_;
  std::function<bool()> isOurs_;
};

}  // namespace vantorel
