#pragma once

namespace vantorel {

/// Has the allocator give every block of a megabyte or more back to the system as soon as it is
/// freed. Left alone it learns from the first block of some size that such are wanted again, takes
/// them from its heaps from then on, and each thread's heap keeps what one picture once needed.
/// Called once, before the first large block.
void keepLargeBlocksApart();

}  // namespace vantorel
