// SPDX-License-Identifier: MIT
#include "platform/linux/confined/Messages.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <span>

namespace vantorel {
namespace {

struct Head {
  std::uint32_t kind = 0;
  std::uint32_t size = 0;
};

bool waitFor(int socket, short events, Deadline deadline) {
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    if (left.count() < 0) return false;
    constexpr std::chrono::milliseconds longest{60'000};
    pollfd wanted{socket, events, 0};
    const int ready = ::poll(&wanted, 1, static_cast<int>(std::min(left, longest).count() + 1));
    if (ready > 0) return true;
    if (ready < 0 && errno != EINTR) return false;
  }
}

/// Tries a transfer until it moves something, and answers how much: 0 when the other end is gone,
/// the deadline passes, or it fails.
template <class Transfer>
std::size_t transferred(int socket, short event, Deadline deadline, Transfer transfer) {
  for (;;) {
    const ssize_t count = transfer();
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno == EINTR) continue;
    if (errno != EAGAIN && errno != EWOULDBLOCK) return 0;
    if (!waitFor(socket, event, deadline)) return 0;
  }
}

bool sendAll(int socket, ByteView bytes, Deadline deadline) {
  while (!bytes.empty()) {
    const auto sent = transferred(socket, POLLOUT, deadline, [&] {
      return ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    });
    if (sent == 0) return false;
    bytes = bytes.subspan(sent);
  }
  return true;
}

bool receiveAll(int socket, std::span<std::byte> bytes, Deadline deadline) {
  while (!bytes.empty()) {
    const auto got = transferred(socket, POLLIN, deadline, [&] {
      return ::recv(socket, bytes.data(), bytes.size(), MSG_DONTWAIT);
    });
    if (got == 0) return false;
    bytes = bytes.subspan(got);
  }
  return true;
}

/// One byte, with room beside it for two open files.
struct Carrier {
  char byte = 0;
  iovec part{&byte, 1};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(TwoFiles))> room{};

  [[nodiscard]] msghdr header() {
    msghdr made{};
    made.msg_iov = &part;
    made.msg_iovlen = 1;
    made.msg_control = room.data();
    made.msg_controllen = room.size();
    return made;
  }
};

}  // namespace

bool hasInput(int socket, Deadline deadline) { return waitFor(socket, POLLIN, deadline); }

bool sendMessage(int socket, std::uint32_t kind, ByteView body, Deadline deadline) {
  if (body.size() > std::numeric_limits<std::uint32_t>::max()) return false;
  const Head head{kind, static_cast<std::uint32_t>(body.size())};
  return sendAll(socket, std::as_bytes(std::span(&head, 1)), deadline) &&
         sendAll(socket, body, deadline);
}

std::optional<Message> receiveMessage(int socket, std::size_t largest, Deadline deadline) {
  Head head;
  if (!receiveAll(socket, std::as_writable_bytes(std::span(&head, 1)), deadline) ||
      head.size > largest)
    return std::nullopt;
  Message message{head.kind, Bytes(head.size)};
  if (!receiveAll(socket, message.body, deadline)) return std::nullopt;
  return message;
}

bool sendFiles(int socket, TwoFiles files, Deadline deadline) {
  Carrier carrier;
  msghdr message = carrier.header();
  cmsghdr* const control = CMSG_FIRSTHDR(&message);
  control->cmsg_level = SOL_SOCKET;
  control->cmsg_type = SCM_RIGHTS;
  control->cmsg_len = CMSG_LEN(sizeof files);
  std::memcpy(CMSG_DATA(control), files.data(), sizeof files);
  return transferred(socket, POLLOUT, deadline,
                     [&] { return ::sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT); }) == 1;
}

std::optional<std::array<FileDescriptor, 2>> receiveFiles(int socket, Deadline deadline) {
  Carrier carrier;
  msghdr message = carrier.header();
  const auto got = transferred(socket, POLLIN, deadline, [&] {
    return ::recvmsg(socket, &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
  });
  const cmsghdr* const control = got == 1 ? CMSG_FIRSTHDR(&message) : nullptr;
  TwoFiles files{-1, -1};
  if (control == nullptr || control->cmsg_level != SOL_SOCKET || control->cmsg_type != SCM_RIGHTS ||
      control->cmsg_len != CMSG_LEN(sizeof files))
    return std::nullopt;
  std::memcpy(files.data(), CMSG_DATA(control), sizeof files);
  return std::array{FileDescriptor(files[0]), FileDescriptor(files[1])};
}

}  // namespace vantorel
