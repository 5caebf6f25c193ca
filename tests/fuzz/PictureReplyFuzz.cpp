// SPDX-License-Identifier: MIT
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/linux/decoding/PictureProtocol.h"

/// What a worker in foreign hands might answer: it is refused, or fits the room that it was given.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vantorel;
  constexpr std::size_t fitsTheSocket = 60'000;
  std::array<int, 2> ends{};
  if (size == 0 || size > fitsTheSocket || ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0)
    return 0;
  const PictureRequest request{
      .form = static_cast<PictureForm>(1 + data[0] % 3), .fitting = {300, 200}, .compression = 0};
  if (::write(ends[0], data + 1, size - 1) != static_cast<ssize_t>(size - 1)) std::abort();
  ::close(ends[0]);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(1);
  const auto reply = receivePictureReply(ends[1], request, deadline);
  ::close(ends[1]);
  if (!reply || reply->status != PictureReply::Status::made) return 0;
  if (reply->bytes == 0 || reply->bytes > roomFor(request)) std::abort();
  if (request.form != PictureForm::pixels) return 0;
  const auto [width, height] = reply->pixelSize;
  if (width < 1 || height < 1 || width > 300 || height > 200) std::abort();
  if (reply->bytes != 4U * static_cast<unsigned>(width) * static_cast<unsigned>(height))
    std::abort();
  return 0;
}
