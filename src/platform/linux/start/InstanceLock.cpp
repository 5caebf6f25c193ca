// SPDX-License-Identifier: MIT
#include "platform/linux/start/InstanceLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <string>
#include <utility>

#include "base/ContentFingerprint.h"

namespace vantorel {

InstanceLock::Result InstanceLock::take(const std::filesystem::path& path) {
  FileDescriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!file.isOpen()) return Result::unavailable;
  if (retryingInterrupted([&file] { return flock(file.get(), LOCK_EX | LOCK_NB); }) == 0) {
    file_.emplace(std::move(file));
    return Result::taken;
  }
  return errno == EWOULDBLOCK ? Result::heldByAnother : Result::unavailable;
}

std::optional<std::filesystem::path> instanceLockPath(const XdgDirectories& directories) {
  if (!directories.runtime) return std::nullopt;
  constexpr std::size_t digits = 16;
  // However the place is spelled, the history there has one lock.
  auto history = directories.dataHome.value_or("").lexically_normal();
  if (!history.has_filename()) history = history.parent_path();
  const auto name = ContentFingerprint::data(bytesOf(history.native())).substr(0, digits);
  return *directories.runtime / ("vantorel-" + name + ".lock");
}

}  // namespace vantorel
