// SPDX-License-Identifier: MIT
#pragma once

#include "base/FileDescriptor.h"

namespace vantorel {

/// Says once and for all that it is time to stop, to a thread that waits for something else too.
/// Any thread.
class StopSignal {
 public:
  StopSignal();

  void raise() const;
  [[nodiscard]] bool isRaised() const;
  /// Readable for ever once raised; -1 when the system had none to give, and nobody is woken.
  [[nodiscard]] int descriptor() const { return event_.get(); }

 private:
  const FileDescriptor event_;
};

}  // namespace vantorel
