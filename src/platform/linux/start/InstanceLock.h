#pragma once

#include <filesystem>
#include <optional>

#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// Keeps a second instance away from the same history, also where no session bus tells of the
/// first. The lock ends with the process, however that ends; the empty file stays.
class InstanceLock {
 public:
  enum class Result { taken, heldByAnother, unavailable };

  InstanceLock() = default;
  ~InstanceLock();
  InstanceLock(const InstanceLock&) = delete;
  InstanceLock& operator=(const InstanceLock&) = delete;

  /// Takes the lock on the file `path`, which is created; its directory must exist.
  [[nodiscard]] Result take(const std::filesystem::path& path);

 private:
  int descriptor_ = -1;
};

/// The lock of the history that belongs to these directories, in the runtime directory; absent
/// where there is none.
[[nodiscard]] std::optional<std::filesystem::path> instanceLockPath(
    const XdgDirectories& directories);

}  // namespace vantorel
