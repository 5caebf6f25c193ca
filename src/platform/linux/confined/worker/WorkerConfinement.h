// SPDX-License-Identifier: MIT
#pragma once

namespace vantorel {

/// Whether a process may divide its work among threads of its own.
enum class Threads { none, own };

/// From now on this process can compute, read what it has open and answer over it, and nothing
/// else. It opens no file, not even for reading, and asks for the facts of none; it starts no
/// program, no process and, with `Threads::none`, no thread; it reaches no network and no other
/// process, neither by signals nor through its limits, its share of the processor or its memory; it
/// makes no memory executable. So whoever gets hold of it through a picture made for that gains
/// nothing to carry away.
///
/// Two walls, each of its own accord: the calls that it may make are listed, any other fails with
/// EPERM; and where the kernel has Landlock the tree of files is closed as well. What is needed of
/// files is opened before. False where the list cannot be had; the process is not to go on then.
/// One thread, before any other has begun.
[[nodiscard]] bool confine(Threads threads = Threads::none);

}  // namespace vantorel
