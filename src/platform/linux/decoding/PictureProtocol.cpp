// SPDX-License-Identifier: MIT
#include "platform/linux/decoding/PictureProtocol.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <span>
#include <type_traits>

#include "platform/linux/confined/Messages.h"
#include "platform/qt/ImageLimits.h"

namespace vantorel {
namespace {

using Status = PictureReply::Status;

constexpr std::uint32_t requestKind = 0x56'44'50'31;
constexpr std::size_t bytesPerPixel = sizeof(std::uint32_t);
// What no compression can make smaller takes this much, and its framing.
constexpr std::size_t roomForEncoded = maxImagePixels * bytesPerPixel + (std::size_t{1} << 20U);

template <class Value>
bool sendValue(int socket, std::uint32_t kind, const Value& value, Deadline deadline) {
  static_assert(std::is_trivially_copyable_v<Value>);
  return sendMessage(socket, kind, std::as_bytes(std::span(&value, 1)), deadline);
}

template <class Value>
std::optional<Value> valueIn(const std::optional<Message>& message) {
  static_assert(std::is_trivially_copyable_v<Value>);
  if (!message || message->body.size() != sizeof(Value)) return std::nullopt;
  Value value{};
  std::memcpy(&value, message->body.data(), sizeof value);
  return value;
}

bool isSide(double points) {
  return std::isfinite(points) && points >= 1 && points <= maxImageSide;
}

bool isWithin(int side, int most) { return side >= 1 && side <= std::max(most, 1); }

bool answers(const PictureReply& reply, const PictureRequest& request) {
  if (reply.status == Status::unreadable) return true;
  if (reply.status != Status::made || reply.bytes == 0 || reply.bytes > roomFor(request))
    return false;
  if (request.form != PictureForm::pixels) return true;
  const auto [width, height] = reply.pixelSize;
  return isWithin(width, request.fitting.width) && isWithin(height, request.fitting.height) &&
         reply.bytes == std::uint64_t{bytesPerPixel} * static_cast<unsigned>(width) *
                            static_cast<unsigned>(height) &&
         isSide(reply.size.width) && isSide(reply.size.height);
}

}  // namespace

std::size_t roomFor(const PictureRequest& request) {
  if (request.form != PictureForm::pixels) return roomForEncoded;
  const auto side = [](int length) { return static_cast<std::uint64_t>(std::max(length, 1)); };
  return std::min(side(request.fitting.width) * side(request.fitting.height), maxImagePixels) *
         bytesPerPixel;
}

bool sendPictureRequest(int socket, const PictureRequest& request, const FileDescriptor& encoded,
                        const FileDescriptor& room, Deadline deadline) {
  return sendValue(socket, requestKind, request, deadline) &&
         sendFiles(socket, {encoded.get(), room.get()}, deadline);
}

std::optional<PictureTask> receivePictureTask(int socket, Deadline deadline) {
  const auto message = receiveMessage(socket, sizeof(PictureRequest), deadline);
  const auto request = valueIn<PictureRequest>(message);
  if (!request || message->kind != requestKind) return std::nullopt;
  auto files = receiveFiles(socket, deadline);
  if (!files) return std::nullopt;
  return PictureTask{*request, std::move((*files)[0]), std::move((*files)[1])};
}

bool sendPictureReply(int socket, const PictureReply& reply, Deadline deadline) {
  return sendValue(socket, static_cast<std::uint32_t>(reply.status), reply, deadline);
}

std::optional<PictureReply> receivePictureReply(int socket, const PictureRequest& request,
                                                Deadline deadline) {
  const auto reply = valueIn<PictureReply>(receiveMessage(socket, sizeof(PictureReply), deadline));
  return reply && answers(*reply, request) ? reply : std::nullopt;
}

}  // namespace vantorel
