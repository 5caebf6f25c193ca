// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstdint>

#include "platform/linux/confined/Share.h"

namespace vantorel {

struct WorkerLimits {
  Share share = Share::usual;
  std::uint64_t memory = 0;  // bytes, beyond what its libraries themselves map
};

/// Lowers this process to its share of the processor's time and bounds what it may take: it writes
/// no file and leaves no core, cannot be traced, gains no privileges, has a limit of memory and is
/// the first to go when memory runs out. It ends with the thread of process `parent` that started
/// it. False when that is gone already.
[[nodiscard]] bool limitThisProcess(pid_t parent, const WorkerLimits& limits);

/// From now on this process may use so much more processor time; then the system kills it, whatever
/// it is in the middle of. Counts whole seconds, rounded up.
void allowProcessorSeconds(double seconds);

/// Processor time that this process has used.
[[nodiscard]] double processorSeconds();

}  // namespace vantorel
