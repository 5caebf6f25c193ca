// SPDX-License-Identifier: MIT
#include "platform/linux/start/LargeBlocks.h"

#include <malloc.h>

namespace vantorel {

void returnFreedLargeBlocks() {
  constexpr int large = 1 << 20;
  // Called before there is a second thread. A fixed threshold also ends the learning.
  // NOLINTBEGIN(concurrency-mt-unsafe)
  (void)mallopt(M_MMAP_THRESHOLD, large);
  // The end of a heap may stay a little larger, lest it is returned and taken in turns.
  (void)mallopt(M_TRIM_THRESHOLD, 2 * large);
  // NOLINTEND(concurrency-mt-unsafe)
}

}  // namespace vantorel
