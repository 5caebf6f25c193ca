// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/TextWorkerProtocol.h"

#include <utility>

#include "base/SplitText.h"
#include "platform/linux/confined/Messages.h"

namespace vantorel {
namespace {

using Status = TextReply::Status;

constexpr std::uint32_t pictureKind = 0x56'54'50'31;

}  // namespace

bool sendPicture(int socket, ByteView picture, Deadline deadline) {
  if (picture.size() > largestRequest) return false;
  return sendMessage(socket, pictureKind, picture, deadline);
}

std::optional<Bytes> receivePicture(int socket, Deadline deadline) {
  auto message = receiveMessage(socket, largestRequest, deadline);
  if (!message || message->kind != pictureKind) return std::nullopt;
  return std::move(message->body);
}

bool sendReply(int socket, const TextReply& reply, Deadline deadline) {
  std::string text;
  for (const std::string& line : reply.lines) {
    if (text.size() + line.size() >= largestReply) break;
    text += line;
    text += '\n';
  }
  return sendMessage(socket, static_cast<std::uint32_t>(reply.status), bytesOf(text), deadline);
}

std::optional<TextReply> receiveReply(int socket, Deadline deadline) {
  const auto message = receiveMessage(socket, largestReply, deadline);
  if (!message) return std::nullopt;
  const auto status = static_cast<Status>(message->kind);
  if (status != Status::read && status != Status::unreadable && status != Status::noEngine)
    return std::nullopt;
  return TextReply{status, linesOf(textOf(message->body))};
}

}  // namespace vantorel
