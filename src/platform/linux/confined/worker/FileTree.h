// SPDX-License-Identifier: MIT
#pragma once

namespace vantorel {

enum class FileTree { closed, open, failed };

/// Takes every file and directory from this process for good, but for what it has open already, and
/// with them the memory of every process that has not given up as much. Privileges do not matter.
/// `open` where the kernel knows no such thing. What it refuses fails with EACCES. One thread,
/// before any other has begun.
[[nodiscard]] FileTree closeFileTree();

}  // namespace vantorel
