// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/LinuxFileThumbnails.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "platform/linux/pictures/PictureReading.h"
#include "platform/linux/pictures/ThumbnailNames.h"

namespace vantorel {

namespace {

constexpr std::uint64_t largestImage = std::uint64_t{64} << 20U;  // bytes
constexpr int maxPixels = 2048;                                   // a side

int pixelsOf(double points, double scale) {
  const double pixels = std::ceil(points * scale);
  // Also what is no number at all.
  if (!(pixels >= 1)) return 1;
  return static_cast<int>(std::min<double>(pixels, maxPixels));
}

bool isImage(std::string_view type) {
  return type.starts_with("image/") && !type.starts_with("image/svg");
}

}  // namespace

LinuxFileThumbnails::LinuxFileThumbnails(Dispatch& dispatch, Sources sources,
                                         ThumbnailerRuns::Limits limits)
    : decoder_(sources.decoder),
      types_(sources.types),
      cache_(sources.files, sources.decoder, std::move(sources.cache)),
      thumbnailers_(sources.files, std::move(sources.thumbnailers)),
      questions_(std::move(sources.userFiles)),
      runs_({dispatch, sources.files, sources.decoder}, std::move(sources.runs), limits),
      queue_(dispatch.serialQueue("com.vantorel.file-thumbs")) {}

LinuxFileThumbnails::~LinuxFileThumbnails() {
  runs_.stop();
  questions_.stop();
}

void LinuxFileThumbnails::generateBestRepresentation(const std::filesystem::path& file, Size size,
                                                     double scale, Completion completion) {
  Request request{file, {pixelsOf(size.width, scale), pixelsOf(size.height, scale)}};
  queue_->async([this, request = std::move(request), completion = std::move(completion)] {
    answer(request, completion);
  });
}

void LinuxFileThumbnails::answer(const Request& request, const Completion& completion) {
  const auto changeTime =
      request.file.is_absolute() ? questions_.changeTime(request.file) : std::nullopt;
  if (!changeTime) return completion(nullptr);
  const auto uri = thumbnailUri(request.file);
  const auto cached = [&](ThumbnailFit fit) {
    return cache_.find(uri, *changeTime, request.most, fit);
  };
  if (const auto picture = cached(ThumbnailFit::largeEnough)) return completion(picture);
  const auto type = types_.typeOf(request.file.filename().string());
  if (const auto picture = decoded(request, type)) return completion(picture);
  if (const auto picture = cached(ThumbnailFit::any)) return completion(picture);
  if (const auto thumbnailer = thumbnailers_.forType(type)) {
    return runs_.make({request.file, *changeTime, request.most}, *thumbnailer, completion);
  }
  completion(nullptr);
}

SharedBitmap LinuxFileThumbnails::decoded(const Request& request, std::string_view type) {
  if (!isImage(type) && !type.empty()) return nullptr;
  const auto wanted =
      type.empty() ? FileQuestions::Wanted::pictures : FileQuestions::Wanted::anything;
  const auto bytes = questions_.contents(request.file, largestImage, wanted);
  return bytes ? pixelsWithin(decoder_, *bytes, request.most) : nullptr;
}

}  // namespace vantorel
