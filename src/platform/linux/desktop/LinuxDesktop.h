// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/Desktop.h"
#include "platform/linux/desktop/Session.h"

namespace vantorel {

class HistoryLock;
class Portal;
class SessionBus;

/// Builds and owns the ports of a desktop, whatever it has for windows. Main thread.
class LinuxDesktop {
 public:
  struct Services {
    Dispatch& dispatch;
    Keychain& keychain;
    SessionBus& bus;
    Portal& portal;
    HistoryLock& historyLock;
  };
  /// Null when what the session was found to have is there no more. Needs the toolkit's application
  /// object; all outlive the result.
  [[nodiscard]] static std::unique_ptr<LinuxDesktop> open(const Services& services,
                                                          Session session);
  ~LinuxDesktop();
  LinuxDesktop(const LinuxDesktop&) = delete;
  LinuxDesktop& operator=(const LinuxDesktop&) = delete;

  /// The ports; they end with this object.
  [[nodiscard]] Desktop ports();
  /// The program is about to end: what it wrote is handed over, which takes 300 ms at most, and
  /// then nobody waits any more for a picture.
  void prepareToEnd();

 private:
  struct Ports;
  explicit LinuxDesktop(std::unique_ptr<Ports> ports);

  std::unique_ptr<Ports> ports_;
};

}  // namespace vantorel
