#pragma once

namespace vantorel {

/// From now on this process can read files and answer over what it has open, and nothing else: it
/// starts no program and no other process, opens nothing for writing, creates, renames and deletes
/// nothing, reaches no network and no other process. Whoever gets hold of it through a picture made
/// for that gains nothing to carry away. Everything refused fails with EPERM. False where the
/// system cannot do this. One thread, before any other has begun.
[[nodiscard]] bool confine();

}  // namespace vantorel
