// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <mutex>
#include <optional>
#include <system_error>

#include "base/FileDescriptor.h"
#include "platform/linux/start/InstanceLock.h"

namespace vantorel {

/// A lock on the directory that holds the history: wherever a second program comes from, whatever
/// its session and however it spells the place, it finds it taken. Nothing is put there, and it
/// ends with the process, however that ends. Any thread.
class HistoryLock {
 public:
  /// Takes the directory, and lets go of what was taken before. `unavailable` where none stands,
  /// or its file system, as a network's may, knows no such locks.
  [[nodiscard]] InstanceLock::Result take(const std::filesystem::path& directory);
  /// The same, as files are claimed: fails only when another process has the directory.
  [[nodiscard]] std::error_code claim(const std::filesystem::path& directory);

 private:
  struct Taken {
    FileDescriptor file;
    dev_t device;
    ino_t number;
  };

  std::mutex mutex_;
  std::optional<Taken> taken_;  // guarded
};

}  // namespace vantorel
