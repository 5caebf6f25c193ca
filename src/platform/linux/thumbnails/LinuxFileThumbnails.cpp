#include "platform/linux/thumbnails/LinuxFileThumbnails.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "platform/linux/icons/PictureReading.h"
#include "platform/linux/thumbnails/PrivateDirectory.h"
#include "platform/linux/thumbnails/ThumbnailNames.h"

namespace vantorel {

namespace {

constexpr std::uint64_t largestImage = std::uint64_t{64} << 20U;  // bytes
constexpr int mostPixels = 2048;                                  // a side

int pixelsOf(double points, double scale) {
  const double pixels = std::ceil(points * scale);
  // Also what is no number at all.
  if (!(pixels >= 1)) return 1;
  return static_cast<int>(std::min<double>(pixels, mostPixels));
}

bool isImage(std::string_view type) {
  return type.starts_with("image/") && !type.starts_with("image/svg");
}

}  // namespace

LinuxFileThumbnails::LinuxFileThumbnails(Dispatch& dispatch, Sources sources, ProcessLimits limits)
    : files_(sources.files),
      decoder_(sources.decoder),
      types_(sources.types),
      cache_(sources.files, sources.decoder, std::move(sources.cache)),
      temporary_(std::move(sources.temporary)),
      limits_(limits),
      thumbnailers_(sources.files, std::move(sources.thumbnailers)),
      questions_(std::move(sources.userFiles)),
      slow_(dispatch.serialQueue("com.vantorel.thumbnailers")),
      quick_(dispatch.serialQueue("com.vantorel.file-thumbs")) {}

LinuxFileThumbnails::~LinuxFileThumbnails() {
  stop_.raise();
  questions_.stop();
}

void LinuxFileThumbnails::generateBestRepresentation(const std::filesystem::path& file, Size size,
                                                     double scale, Completion completion) {
  Request request{file, {pixelsOf(size.width, scale), pixelsOf(size.height, scale)}};
  quick_->async([this, request = std::move(request), completion = std::move(completion)] {
    answerQuickly(request, completion);
  });
}

void LinuxFileThumbnails::answerQuickly(const Request& request, const Completion& completion) {
  const auto changeTime =
      request.file.is_absolute() ? questions_.changeTime(request.file) : std::nullopt;
  if (!changeTime) return completion(nullptr);
  const auto uri = thumbnailUri(request.file);
  const auto cached = [&](ThumbnailFit fit) {
    return cache_.find(uri, *changeTime, request.most, fit);
  };
  if (const auto picture = cached(ThumbnailFit::largeEnough)) return completion(picture);
  const std::string type(types_.types()->typeOf(request.file.filename().string()));
  if (const auto picture = decoded(request, type)) return completion(picture);
  if (const auto picture = cached(ThumbnailFit::any)) return completion(picture);
  if (const auto thumbnailer = thumbnailers_.forType(type)) {
    return answerSlowly(request, *thumbnailer, completion);
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

void LinuxFileThumbnails::answerSlowly(const Request& request, const ThumbnailerEntry& thumbnailer,
                                       const Completion& completion) {
  Key key(request.file.string(), request.most.width, request.most.height);
  {
    // Who asks again while the thumbnailer is at it waits for the same picture.
    const std::lock_guard lock(mutex_);
    auto& waiting = waiting_[key];
    waiting.push_back(completion);
    if (waiting.size() > 1) return;
  }
  slow_->async([this, request, thumbnailer, key = std::move(key)] {
    const auto picture = made(request, thumbnailer);
    std::vector<Completion> waiting;
    {
      const std::lock_guard lock(mutex_);
      const auto found = waiting_.find(key);
      waiting = std::move(found->second);
      waiting_.erase(found);
    }
    for (const auto& each : waiting) each(picture);
  });
}

SharedBitmap LinuxFileThumbnails::made(const Request& request,
                                       const ThumbnailerEntry& thumbnailer) const {
  const PrivateDirectory directory(temporary_);
  if (directory.path().empty()) return nullptr;
  const auto output = directory.path() / "thumbnail.png";
  const auto command =
      thumbnailerCommand(thumbnailer, {request.file, thumbnailUri(request.file), output,
                                       std::max(request.most.width, request.most.height)});
  if (runLimited(command, directory.path(), limits_, stop_) != ProcessEnd::success) return nullptr;
  const auto bytes = files_.readFile(output, limits_.fileSize);
  return bytes ? pixelsWithin(decoder_, *bytes, request.most) : nullptr;
}

}  // namespace vantorel
