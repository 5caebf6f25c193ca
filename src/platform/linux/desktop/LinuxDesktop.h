#pragma once

#include <memory>

#include "platform/Desktop.h"

namespace vantorel {

class HistoryLock;
class PortalColorScheme;
class SessionBus;

/// Builds and owns the ports of an X11 desktop. Main thread.
class LinuxDesktop {
 public:
  /// Null when no X server can be reached. Needs the toolkit's application object; all outlive the
  /// result.
  [[nodiscard]] static std::unique_ptr<LinuxDesktop> open(Dispatch& dispatch, Keychain& keychain,
                                                          SessionBus& bus,
                                                          PortalColorScheme& portal,
                                                          HistoryLock& historyLock);
  ~LinuxDesktop();
  LinuxDesktop(const LinuxDesktop&) = delete;
  LinuxDesktop& operator=(const LinuxDesktop&) = delete;

  /// The ports; they end with this object.
  [[nodiscard]] Desktop ports();
  /// The program is about to end: nobody waits any more for a picture to be shown.
  void stopShowing();

 private:
  struct Ports;
  explicit LinuxDesktop(std::unique_ptr<Ports> ports);

  std::unique_ptr<Ports> ports_;
};

}  // namespace vantorel
