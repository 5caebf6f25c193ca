#pragma once

#include <optional>
#include <vector>

#include "platform/linux/DesktopEntries.h"
#include "platform/linux/x11/WindowApplication.h"
#include "platform/linux/x11/X11Windows.h"

namespace vantorel {

struct ApplicationWindow {
  WindowFacts facts;
  RunningApplication application;
};

/// The applications behind the windows of one connection. Waits for the server alone; one thread at
/// a time.
class X11Applications {
 public:
  /// Both outlive this.
  X11Applications(X11Connection& connection, const DesktopEntries& entries);

  [[nodiscard]] const X11Windows& windows() const { return windows_; }

  /// The window that has the user's attention. An application whose active window is no normal one
  /// is regular all the same when it owns a normal one besides.
  [[nodiscard]] std::optional<ApplicationWindow> active() const;
  /// Every window of an application, the highest first, each with its application's policy.
  [[nodiscard]] std::vector<ApplicationWindow> all() const;

  [[nodiscard]] ApplicationWindow describe(WindowFacts facts) const;
  [[nodiscard]] bool hasEntry(const WindowFacts& facts) const;
  [[nodiscard]] const LocalHost& host() const { return host_; }

 private:
  X11Windows windows_;
  const DesktopEntries& entries_;
  LocalHost host_;
};

}  // namespace vantorel
