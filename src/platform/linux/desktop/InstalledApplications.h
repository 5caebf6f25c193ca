// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/applications/DesktopEntries.h"
#include "platform/posix/ThreadedQueue.h"

namespace vantorel {

/// The desktop entries, read where nobody waits for the disk: at the start, and again when somebody
/// misses one.
class InstalledApplications {
 public:
  InstalledApplications() { readAgain(); }

  [[nodiscard]] const DesktopEntries& entries() const { return entries_; }
  void readAgain() {
    queue_.async([this] { static_cast<void>(entries_.refresh()); });
  }

 private:
  DesktopEntries entries_{DesktopEntryPlaces::fromEnvironment(processEnvironment)};
  ThreadedQueue queue_{"com.vantorel.desktop-entries"};  // last: it reads the others
};

}  // namespace vantorel
