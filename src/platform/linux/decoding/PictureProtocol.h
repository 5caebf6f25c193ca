// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "base/Deadline.h"
#include "base/FileDescriptor.h"
#include "platform/Bitmap.h"

namespace vantorel {

// What the program and the worker that decodes its pictures say to each other: a request with the
// encoded picture and room for what comes of it, both shared memory; then what lies in that room.

enum class PictureForm : std::uint32_t { pixels = 1, png = 2, jpeg = 3 };

struct PictureRequest {
  PictureForm form = PictureForm::pixels;
  PixelSize fitting{1, 1};  // of `pixels`: scaled down into this, as `ImageDecoder::bitmap` does
  double compression = 0;   // of `jpeg`, as `Image::jpegData` takes it
};

struct PictureReply {
  enum class Status : std::uint32_t { made = 1, unreadable = 2 };
  Status status = Status::unreadable;
  std::uint64_t bytes = 0;  // how much of the room is used
  // Of `pixels`, which lie there as a `Bitmap` has them.
  PixelSize pixelSize{};
  Size size{};  // points, of the whole picture
};

/// A request as it arrives.
struct PictureTask {
  PictureRequest request;
  FileDescriptor encoded;
  FileDescriptor room;
};

/// How many bytes the answer takes at most; nothing of it is used before it is written to.
[[nodiscard]] std::size_t roomFor(const PictureRequest& request);

/// Each sends or receives one whole message. False or absent when the other end is gone, the
/// deadline passes, or what comes is no message.
[[nodiscard]] bool sendPictureRequest(int socket, const PictureRequest& request,
                                      const FileDescriptor& encoded, const FileDescriptor& room,
                                      Deadline deadline);
[[nodiscard]] std::optional<PictureTask> receivePictureTask(int socket, Deadline deadline);
[[nodiscard]] bool sendPictureReply(int socket, const PictureReply& reply, Deadline deadline);
/// Absent too when it is no answer to that request: what it claims fits the room and its own sizes,
/// whoever has got hold of the worker.
[[nodiscard]] std::optional<PictureReply> receivePictureReply(int socket,
                                                              const PictureRequest& request,
                                                              Deadline deadline);

}  // namespace vantorel
