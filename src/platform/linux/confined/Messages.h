// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/Bytes.h"
#include "base/Deadline.h"
#include "base/FileDescriptor.h"

namespace vantorel {

// What the program and its workers say to each other over a stream socket. Both are built together,
// so there are no versions. Each operation sends or receives one whole message: false or absent
// when the other end is gone, the deadline passes, or what comes is no message.

struct Message {
  std::uint32_t kind = 0;
  Bytes body;
};

/// Waits until something comes, be it the end of the other side. False at the deadline.
[[nodiscard]] bool hasInput(int socket, Deadline deadline);

[[nodiscard]] bool sendMessage(int socket, std::uint32_t kind, ByteView body, Deadline deadline);
/// One whose body is longer than `largest` is none.
[[nodiscard]] std::optional<Message> receiveMessage(int socket, std::size_t largest,
                                                    Deadline deadline);

/// Two open files, which belong to both sides from then on. Who never receives files gets none,
/// whatever is sent.
using TwoFiles = std::array<int, 2>;
[[nodiscard]] bool sendFiles(int socket, TwoFiles files, Deadline deadline);
[[nodiscard]] std::optional<std::array<FileDescriptor, 2>> receiveFiles(int socket,
                                                                        Deadline deadline);

}  // namespace vantorel
