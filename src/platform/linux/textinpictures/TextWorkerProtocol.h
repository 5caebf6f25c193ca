// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "base/Deadline.h"

namespace vantorel {

// What the program and the worker that reads its pictures say to each other: a picture there, its
// text back.

struct TextReply {
  enum class Status : std::uint32_t { read = 1, unreadable = 2, noEngine = 3 };
  Status status = Status::unreadable;
  std::vector<std::string> lines;
};

inline constexpr std::size_t largestRequest = std::size_t{1} << 28U;
inline constexpr std::size_t largestReply = std::size_t{1} << 20U;

/// Each sends or receives one whole message over a stream socket. False or absent when the other
/// end is gone, the deadline passes, or what comes is no message.
[[nodiscard]] bool sendPicture(int socket, ByteView picture, Deadline deadline);
[[nodiscard]] std::optional<Bytes> receivePicture(int socket, Deadline deadline);
[[nodiscard]] bool sendReply(int socket, const TextReply& reply, Deadline deadline);
[[nodiscard]] std::optional<TextReply> receiveReply(int socket, Deadline deadline);

}  // namespace vantorel
