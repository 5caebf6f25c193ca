// SPDX-License-Identifier: MIT
#include "platform/linux/start/ClosedProcess.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace vantorel {

void leaveNoCore() {
  const rlimit none{0, 0};
  (void)::setrlimit(RLIMIT_CORE, &none);
}

void closeProcess() { (void)::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0); }

}  // namespace vantorel
