#pragma once

#include <filesystem>

namespace vantorel {

/// Keeps a second instance away where no session bus could tell of the first. The lock ends with
/// the process, however that ends; the empty file stays.
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

}  // namespace vantorel
