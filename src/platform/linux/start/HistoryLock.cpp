// SPDX-License-Identifier: MIT
#include "platform/linux/start/HistoryLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace vantorel {

using Result = InstanceLock::Result;

Result HistoryLock::take(const std::filesystem::path& directory) {
  FileDescriptor file(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  struct stat status {};
  if (!file.isOpen() || fstat(file.get(), &status) != 0) return Result::unavailable;
  const std::lock_guard guard(mutex_);
  // Taken once more by another descriptor it would count as somebody else's.
  if (taken_ && taken_->device == status.st_dev && taken_->number == status.st_ino) {
    return Result::taken;
  }
  if (retryingInterrupted([&file] { return flock(file.get(), LOCK_EX | LOCK_NB); }) != 0) {
    return errno == EWOULDBLOCK ? Result::heldByAnother : Result::unavailable;
  }
  taken_.reset();
  taken_.emplace(Taken{std::move(file), status.st_dev, status.st_ino});
  return Result::taken;
}

std::error_code HistoryLock::claim(const std::filesystem::path& directory) {
  if (take(directory) != Result::heldByAnother) return {};
  return std::make_error_code(std::errc::device_or_resource_busy);
}

}  // namespace vantorel
