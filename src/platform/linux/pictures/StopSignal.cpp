// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/StopSignal.h"

#include <poll.h>
#include <sys/eventfd.h>

namespace vantorel {

StopSignal::StopSignal() : event_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

void StopSignal::raise() const {
  if (event_.isOpen()) (void)::eventfd_write(event_.get(), 1);
}

bool StopSignal::isRaised() const {
  pollfd question{event_.get(), POLLIN, 0};
  return ::poll(&question, 1, 0) > 0;
}

}  // namespace vantorel
