// SPDX-License-Identifier: MIT
#include "tool/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "base/FileDescriptor.h"

namespace vantorel::standardStreams {

bool occupy() {
  const bool hasOutput = ::fcntl(STDOUT_FILENO, F_GETFD) != -1;
  // The lowest free number is taken each time, so the first that is higher ends it.
  for (;;) {
    const int descriptor = ::open("/dev/null", O_RDWR);
    if (descriptor > STDERR_FILENO) ::close(descriptor);
    if (descriptor > STDERR_FILENO || descriptor < 0) return hasOutput;
  }
}

std::error_code write(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count =
        retryingInterrupted([&] { return ::write(STDOUT_FILENO, bytes.data(), bytes.size()); });
    if (count < 0) return lastSystemError();
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return {};
}

void complain(std::string_view sentence) {
  std::fprintf(stderr, "vantorel: %.*s\n", static_cast<int>(sentence.size()), sentence.data());
}

}  // namespace vantorel::standardStreams
