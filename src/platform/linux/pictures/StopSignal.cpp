#include "platform/linux/pictures/StopSignal.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace vantorel {

StopSignal::StopSignal() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

StopSignal::~StopSignal() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

void StopSignal::raise() const {
  if (descriptor_ >= 0) (void)::eventfd_write(descriptor_, 1);
}

bool StopSignal::isRaised() const {
  pollfd question{descriptor_, POLLIN, 0};
  return ::poll(&question, 1, 0) > 0;
}

}  // namespace vantorel
