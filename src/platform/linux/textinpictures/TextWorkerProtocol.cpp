#include "platform/linux/textinpictures/TextWorkerProtocol.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "base/SplitText.h"

namespace vantorel {
namespace {

using Status = TextReply::Status;

struct Head {
  std::uint32_t kind = 0;
  std::uint32_t size = 0;
};

constexpr std::uint32_t pictureKind = 0x56'54'50'31;

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

bool sendAll(int socket, ByteView bytes, Deadline deadline) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(sent));
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      if (!waitFor(socket, POLLOUT, deadline)) return false;
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

bool receiveAll(int socket, std::span<std::byte> bytes, Deadline deadline) {
  while (!bytes.empty()) {
    const ssize_t got = ::recv(socket, bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (got == 0) return false;
    if (got > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(got));
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      if (!waitFor(socket, POLLIN, deadline)) return false;
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

bool sendMessage(int socket, Head head, ByteView body, Deadline deadline) {
  return sendAll(socket, std::as_bytes(std::span(&head, 1)), deadline) &&
         sendAll(socket, body, deadline);
}

std::optional<std::pair<Head, Bytes>> receiveMessage(int socket, std::size_t largest,
                                                     Deadline deadline) {
  Head head;
  if (!receiveAll(socket, std::as_writable_bytes(std::span(&head, 1)), deadline) ||
      head.size > largest)
    return std::nullopt;
  Bytes body(head.size);
  if (!receiveAll(socket, body, deadline)) return std::nullopt;
  return std::pair(head, std::move(body));
}

}  // namespace

bool hasInput(int socket, Deadline deadline) { return waitFor(socket, POLLIN, deadline); }

bool sendPicture(int socket, ByteView picture, Deadline deadline) {
  if (picture.size() > largestRequest) return false;
  return sendMessage(socket, {pictureKind, static_cast<std::uint32_t>(picture.size())}, picture,
                     deadline);
}

std::optional<Bytes> receivePicture(int socket, Deadline deadline) {
  auto message = receiveMessage(socket, largestRequest, deadline);
  if (!message || message->first.kind != pictureKind) return std::nullopt;
  return std::move(message->second);
}

bool sendReply(int socket, const TextReply& reply, Deadline deadline) {
  std::string text;
  for (const std::string& line : reply.lines) {
    if (text.size() + line.size() >= largestReply) break;
    text += line;
    text += '\n';
  }
  return sendMessage(
      socket, {static_cast<std::uint32_t>(reply.status), static_cast<std::uint32_t>(text.size())},
      bytesOf(text), deadline);
}

std::optional<TextReply> receiveReply(int socket, Deadline deadline) {
  const auto message = receiveMessage(socket, largestReply, deadline);
  if (!message) return std::nullopt;
  const auto status = static_cast<Status>(message->first.kind);
  if (status != Status::read && status != Status::unreadable && status != Status::noEngine)
    return std::nullopt;
  return TextReply{status, linesOf(textOf(message->second))};
}

}  // namespace vantorel
