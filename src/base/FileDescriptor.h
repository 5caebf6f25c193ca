// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace vantorel {

[[nodiscard]] inline std::error_code lastSystemError() { return {errno, std::generic_category()}; }

/// Calls `operation` again as long as a signal interrupts it.
template <class Operation>
auto retryingInterrupted(Operation operation) {
  for (;;) {
    const auto result = operation();
    if (result != -1 || errno != EINTR) return result;
  }
}

/// Owns an open file, or none (-1).
class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  ~FileDescriptor() {
    if (isOpen()) ::close(descriptor_);
  }

  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  [[nodiscard]] int get() const { return descriptor_; }
  /// Some file systems tell only here that what was written could not be kept. The descriptor is
  /// gone whatever the answer.
  [[nodiscard]] std::error_code close() {
    if (::close(std::exchange(descriptor_, -1)) == 0 || errno == EINTR) return {};
    return lastSystemError();
  }

 private:
  int descriptor_;
};

}  // namespace vantorel
