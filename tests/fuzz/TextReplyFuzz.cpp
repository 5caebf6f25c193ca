// SPDX-License-Identifier: MIT
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/linux/textinpictures/TextWorkerProtocol.h"

/// What a worker in foreign hands might answer: it is refused, or is lines of text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vantorel;
  constexpr std::size_t fitsTheSocket = 60'000;
  std::array<int, 2> ends{};
  if (size > fitsTheSocket || ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0) return 0;
  if (::write(ends[0], data, size) != static_cast<ssize_t>(size)) std::abort();
  ::close(ends[0]);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(1);
  if (const auto reply = receiveReply(ends[1], deadline)) {
    for (const auto& line : reply->lines)
      if (line.find('\n') != std::string::npos) std::abort();
  }
  ::close(ends[1]);
  return 0;
}
