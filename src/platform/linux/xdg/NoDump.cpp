// SPDX-License-Identifier: MIT
#include "platform/linux/xdg/NoDump.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <array>

#include "base/FileDescriptor.h"

namespace vantorel {
namespace {

std::error_code unlessUnsupported(std::error_code error) {
  constexpr std::array unsupported = {ENOTTY, EOPNOTSUPP, ENOSYS, EINVAL, EPERM, EACCES, EROFS};
  const bool is =
      std::find(unsupported.begin(), unsupported.end(), error.value()) != unsupported.end();
  return is ? std::error_code() : error;
}

}  // namespace

std::error_code setNoDump(const std::filesystem::path& directory) {
  const FileDescriptor file(retryingInterrupted(
      [&] { return ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (!file.isOpen()) return lastSystemError();
  // The kernel reads and writes an int here, whatever the request's own definition says.
  int flags = 0;
  if (::ioctl(file.get(), FS_IOC_GETFLAGS, &flags) != 0) {
    return unlessUnsupported(lastSystemError());
  }
  if ((flags & FS_NODUMP_FL) != 0) return {};
  flags |= FS_NODUMP_FL;
  if (::ioctl(file.get(), FS_IOC_SETFLAGS, &flags) != 0) {
    return unlessUnsupported(lastSystemError());
  }
  return {};
}

}  // namespace vantorel
