// SPDX-License-Identifier: MIT
#pragma once

namespace vantorel {

/// Has the allocator return every block of a megabyte or more to the system as soon as it is freed.
/// Left alone, it takes blocks of a size that was freed once from its heaps from then on, and each
/// thread's heap keeps what one picture needed. To be called once, before the first large block.
void returnFreedLargeBlocks();

}  // namespace vantorel
