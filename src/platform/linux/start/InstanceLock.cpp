#include "platform/linux/start/InstanceLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace vantorel {

InstanceLock::~InstanceLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

InstanceLock::Result InstanceLock::take(const std::filesystem::path& path) {
  const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (descriptor < 0) return Result::unavailable;
  int status = 0;
  do {
    status = flock(descriptor, LOCK_EX | LOCK_NB);
  } while (status != 0 && errno == EINTR);
  if (status == 0) {
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = descriptor;
    return Result::taken;
  }
  const int reason = errno;
  close(descriptor);
  return reason == EWOULDBLOCK ? Result::heldByAnother : Result::unavailable;
}

std::optional<std::filesystem::path> instanceLockPath(const XdgDirectories& directories) {
  if (!directories.runtime) return std::nullopt;
  const auto history = std::filesystem::hash_value(directories.dataHome.value_or(""));
  return *directories.runtime / ("vantorel-" + std::to_string(history) + ".lock");
}

}  // namespace vantorel
