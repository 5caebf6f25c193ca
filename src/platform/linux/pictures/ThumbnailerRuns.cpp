// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/ThumbnailerRuns.h"

#include <algorithm>
#include <utility>

#include "platform/linux/pictures/PictureReading.h"
#include "platform/linux/pictures/PrivateDirectory.h"
#include "platform/linux/pictures/ThumbnailNames.h"

namespace vantorel {

ThumbnailerRuns::ThumbnailerRuns(Services services, Places places, Limits limits)
    : services_(services),
      temporary_(std::move(places.temporary)),
      bubblewrap_(std::move(places.bubblewrap)),
      limits_(limits),
      slowQueue_(services.dispatch.serialQueue("com.vantorel.slow-thumbs")),
      quickQueue_(services.dispatch.serialQueue("com.vantorel.thumbnailers")) {}

ThumbnailerRuns::~ThumbnailerRuns() { stop(); }

void ThumbnailerRuns::stop() { stop_.raise(); }

void ThumbnailerRuns::make(const Request& request, const ThumbnailerEntry& thumbnailer,
                           const Completion& completion) {
  if (hasFailed(request)) return completion(nullptr);
  {
    const std::lock_guard lock(mutex_);
    auto& waiting = waiting_[Key(request.file.string(), request.most.width, request.most.height)];
    waiting.push_back(completion);
    if (waiting.size() > 1) return;
  }
  quickQueue_->async([this, request, thumbnailer] { tryWithTimeout(request, thumbnailer); });
}

bool ThumbnailerRuns::hasFailed(const Request& request) const {
  const std::lock_guard lock(mutex_);
  const auto known = failed_.find(request.file.string());
  return known != failed_.end() && known->second == request.changeTime;
}

void ThumbnailerRuns::tryWithTimeout(const Request& request, const ThumbnailerEntry& thumbnailer) {
  const bool mayTakeLonger = limits_.firstTry < limits_.process.time;
  const auto first =
      attempt(request, thumbnailer, std::min(limits_.firstTry, limits_.process.time));
  if (first.end != ProcessEnd::tookTooLong || !mayTakeLonger) return finish(request, first);
  slowQueue_->async([this, request, thumbnailer] {
    finish(request, attempt(request, thumbnailer, limits_.process.time));
  });
}

ThumbnailerRuns::Attempt ThumbnailerRuns::attempt(const Request& request,
                                                  const ThumbnailerEntry& thumbnailer,
                                                  std::chrono::milliseconds time) {
  const PrivateDirectory directory(temporary_);
  if (directory.path().empty()) return {};
  const auto output = directory.path() / "thumbnail.png";
  const auto command =
      thumbnailerCommand(thumbnailer, {request.file, thumbnailUri(request.file), output,
                                       std::max(request.most.width, request.most.height)});
  const auto boxed = bubblewrap_.boxed(command, {request.file, directory.path()}, stop_);
  auto limits = limits_.process;
  limits.time = time;
  Attempt result;
  result.end = runLimited(boxed, directory.path(), limits, stop_);
  if (result.end != ProcessEnd::success) return result;
  const auto bytes = services_.files.readFile(output, limits.fileSize);
  if (bytes) result.picture = pixelsWithin(services_.decoder, *bytes, request.most);
  return result;
}

void ThumbnailerRuns::finish(const Request& request, const Attempt& attempt) {
  const auto file = request.file.string();
  std::vector<Completion> waiting;
  {
    const std::lock_guard lock(mutex_);
    if (attempt.end == ProcessEnd::tookTooLong || attempt.end == ProcessEnd::crashed) {
      failed_[file] = request.changeTime;
    }
    const auto found = waiting_.find(Key(file, request.most.width, request.most.height));
    waiting = std::move(found->second);
    waiting_.erase(found);
  }
  for (const auto& each : waiting) each(attempt.picture);
}

}  // namespace vantorel
