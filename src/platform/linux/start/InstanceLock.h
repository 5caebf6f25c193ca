// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>

#include "base/FileDescriptor.h"
#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// Keeps a second instance away from the same history, also where no session bus tells of the
/// first. The lock ends with the process, however that ends; the empty file stays.
class InstanceLock {
 public:
  enum class Result { taken, heldByAnother, unavailable };

  /// Takes the lock on the file `path`, which is created; its directory must exist.
  [[nodiscard]] Result take(const std::filesystem::path& path);

 private:
  std::optional<FileDescriptor> file_;
};

/// The lock of the history that belongs to these directories, in the runtime directory; absent
/// where there is none. Whatever a build was made with, the same history has the same lock.
[[nodiscard]] std::optional<std::filesystem::path> instanceLockPath(
    const XdgDirectories& directories);

}  // namespace vantorel
