#pragma once

#include <sys/types.h>

#include "platform/linux/textinpictures/TextWorkerProtocol.h"

namespace vantorel {

/// Makes this process one that nobody notices: it gets only a `share` of the time, lets no
/// file grow and leaves no core, cannot be traced, gains no privileges, takes a bounded amount of
/// memory, is the first to go when memory runs out, and ends with the thread of process `parent`
/// that started it. False when that is gone already.
[[nodiscard]] bool becomeUnnoticed(pid_t parent, Share share);

/// From now on this process may use so much more processor time; then the system kills it, whatever
/// it is in the middle of. Counts whole seconds, rounded up.
void allowProcessorSeconds(double seconds);

/// Processor time that this process has used.
[[nodiscard]] double processorSeconds();

}  // namespace vantorel
