#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Dispatch.h"
#include "platform/EventMonitors.h"

namespace vantorel {

/// Mouse presses anywhere, as the server reports them raw to the root window, even while another
/// program has grabbed the mouse. A connection and a thread exist only as long as a monitor does.
class X11EventMonitors : public EventMonitors {
 public:
  /// `dispatch` outlives this and every monitor.
  explicit X11EventMonitors(Dispatch& dispatch, std::string display = {});

  [[nodiscard]] std::unique_ptr<Observation> addGlobalMouseDownMonitor(
      std::function<void()> handler) override;

 private:
  Dispatch& dispatch_;
  std::string display_;
};

}  // namespace vantorel
