// SPDX-License-Identifier: MIT
#include "platform/linux/decoding/PictureWorker.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "platform/linux/confined/ConfinedProcess.h"
#include "platform/linux/confined/SharedMemory.h"

namespace vantorel {

using Status = PictureReply::Status;
using std::chrono::steady_clock;

namespace {

constexpr std::chrono::seconds longestDeath{1};  // of a process that has found nothing to do
constexpr std::chrono::seconds tidyingUp{1};     // of the processor, between two pictures

}  // namespace

PictureWorker::PictureWorker(Settings settings) : settings_(std::move(settings)) {}

PictureWorker::~PictureWorker() = default;

SharedBitmap PictureWorker::bitmap(ByteView encoded, PixelSize fitting) {
  const PictureRequest request{
      .form = PictureForm::pixels,
      .fitting = {std::max(fitting.width, 1), std::max(fitting.height, 1)}};
  const auto made = make(encoded, request);
  if (!made) return nullptr;
  auto picture = std::make_shared<Bitmap>();
  picture->size = made->reply.size;
  picture->pixelSize = made->reply.pixelSize;
  picture->pixels.resize(made->reply.bytes / sizeof(picture->pixels.front()));
  const bool isWhole = readShared(made->room, std::as_writable_bytes(std::span(picture->pixels)));
  return isWhole ? picture : nullptr;
}

std::shared_ptr<const Bytes> PictureWorker::png(ByteView encoded) {
  return encodedAs(encoded, {.form = PictureForm::png});
}

std::shared_ptr<const Bytes> PictureWorker::jpeg(ByteView encoded, double compression) {
  return encodedAs(encoded, {.form = PictureForm::jpeg, .compression = compression});
}

std::shared_ptr<const Bytes> PictureWorker::encodedAs(ByteView encoded,
                                                      const PictureRequest& request) {
  const auto made = make(encoded, request);
  if (!made) return nullptr;
  auto bytes = std::make_shared<Bytes>(made->reply.bytes);
  return readShared(made->room, *bytes) ? bytes : nullptr;
}

void PictureWorker::stop() { stop_.request_stop(); }

int PictureWorker::processId() {
  const std::lock_guard lock(mutex_);
  return process_ && process_->isRunning() ? process_->processId() : 0;
}

std::optional<PictureWorker::Made> PictureWorker::make(ByteView encoded,
                                                       const PictureRequest& request) {
  // Before the copy: those who wait keep none.
  const std::lock_guard lock(mutex_);
  const FileDescriptor input = sharedCopy(encoded);
  FileDescriptor room = sharedRoom(roomFor(request));
  if (!input.isOpen() || !room.isOpen()) return std::nullopt;
  const auto reply = ask(request, input, room);
  if (!reply || reply->status != Status::made) return std::nullopt;
  return Made{*reply, std::move(room)};
}

/// A process that waited too long may go just as it is asked: then another attempt is worth it. One
/// that dies of the picture, or comes to no end with it, is not followed by another.
std::optional<PictureReply> PictureWorker::ask(const PictureRequest& request,
                                               const FileDescriptor& encoded,
                                               const FileDescriptor& room) {
  const auto stop = stop_.get_token();
  while (!stop.stop_requested() && !hasFailedTooOften()) {
    const bool wasWaiting = process_ && process_->isRunning();
    if (!wasWaiting && !ensureProcess()) return std::nullopt;
    const auto deadline = steady_clock::now() + settings_.pictureLimit;
    {
      const std::stop_callback onStop(stop, [this] { process_->terminate(); });
      process_->allowProcessorTime(settings_.processorLimit);
      const bool wasSent = sendPictureRequest(process_->socket(), request, encoded, room, deadline);
      const auto reply =
          wasSent ? receivePictureReply(process_->socket(), request, deadline) : std::nullopt;
      if (reply) {
        process_->allowProcessorTime(tidyingUp);
        return reply;
      }
    }
    const auto now = steady_clock::now();
    const bool wentIdle = wasWaiting && now < deadline &&
                          process_->wentIdle(stop, std::min(deadline, now + longestDeath));
    process_.reset();
    if (wentIdle) continue;
    if (!stop.stop_requested()) failures_.push_back(steady_clock::now());
    return std::nullopt;
  }
  return std::nullopt;
}

bool PictureWorker::ensureProcess() {
  process_.reset();
  if (!settings_.program.empty())
    process_ =
        ConfinedProcess::start(settings_.program, {std::to_string(settings_.idleLimit.count())});
  return process_ != nullptr;
}

bool PictureWorker::hasFailedTooOften() {
  const auto past = steady_clock::now() - settings_.failureTime;
  while (!failures_.empty() && failures_.front() <= past) failures_.pop_front();
  return failures_.size() >= settings_.failureLimit;
}

}  // namespace vantorel
