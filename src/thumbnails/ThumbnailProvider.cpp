// SPDX-License-Identifier: MIT
#include "thumbnails/ThumbnailProvider.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "store/AssetFolder.h"
#include "store/StoredPicture.h"
#include "thumbnails/PictureScale.h"

namespace vantorel {
namespace {

constexpr Size fileThumbnailSize{240, 240};
constexpr double scaleWithoutScreen = 2;

std::size_t bytesOf(const Bitmap& picture) {
  return picture.pixels.size() * sizeof(picture.pixels.front());
}

/// The extension that names a file's type, without its dot.
std::string extensionOf(const std::filesystem::path& file) {
  const auto extension = file.extension().string();
  return extension.empty() ? extension : extension.substr(1);
}

}  // namespace

ThumbnailProvider::ThumbnailProvider(const ClipStore& store, ThumbnailServices services)
    : store_(store),
      services_(services),
      imageQueue_(services.dispatch.serialQueue("com.vantorel.thumbnail-images")) {}

/// Whoever still waits is told that there will be no picture.
ThumbnailProvider::~ThumbnailProvider() {
  imageQueue_.reset();
  for (auto& [id, completions] : waiting_) {
    for (auto& completion : completions) {
      services_.dispatch.async([completion = std::move(completion)] { completion(nullptr); });
    }
  }
}

void ThumbnailProvider::requestThumbnail(const ClipItem& item, Completion completion) {
  if (!completion) completion = [](const SharedBitmap& /*picture*/) {};
  if (auto picture = cached(item.id)) return completion(std::move(picture));
  switch (item.kind) {
    case ClipKind::text:
      return completion(nullptr);
    case ClipKind::image:
      return requestImage(item, std::move(completion));
    case ClipKind::files:
      return requestFile(item, std::move(completion));
  }
}

SharedBitmap ThumbnailProvider::cached(Uuid id) {
  dropBlurred();
  const SharedBitmap* const picture = kept_.find(id);
  return picture != nullptr ? *picture : nullptr;
}

void ThumbnailProvider::requestImage(const ClipItem& item, Completion completion) {
  if (!waitFor(item.id, std::move(completion))) return;
  auto made = life_.guard([this, id = item.id, scale = scale_](const SharedBitmap& picture) {
    finish(id, scale, picture);
  });
  imageQueue_->async([made = std::move(made), item,
                      folder = AssetFolder(services_.files, store_.assetsUrl()),
                      storage = store_.secureStorage(), fitting = largestPicture(),
                      &images = services_.images, &main = services_.dispatch] {
    SharedBitmap picture;
    const auto encoded = storedPicture(folder, storage.get(), item);
    if (encoded) picture = images.bitmap(*encoded, fitting);
    main.async([made, picture = std::move(picture)] { made(picture); });
  });
}

void ThumbnailProvider::requestFile(const ClipItem& item, Completion completion) {
  if (item.filePaths.empty()) return completion(nullptr);
  const std::filesystem::path file(item.filePaths.front());
  if (services_.firstFileIsGone(item)) {
    return services_.icons.typeIcon(extensionOf(file), std::move(completion));
  }
  if (waitFor(item.id, std::move(completion))) makeFileThumbnail(item.id, file);
}

void ThumbnailProvider::makeFileThumbnail(Uuid id, const std::filesystem::path& file) {
  auto store = life_.guard(
      [this, id, scale = scale_](const SharedBitmap& picture) { finish(id, scale, picture); });
  auto made = life_.guard([this, file, store = std::move(store)](const SharedBitmap& picture) {
    if (picture) return store(picture);
    services_.icons.fileIcon(file, store);
  });
  services_.fileThumbnails.generateBestRepresentation(
      file, fileThumbnailSize, scale_,
      [made = std::move(made), &main = services_.dispatch](const SharedBitmap& picture) {
        main.async([made, picture] { made(picture); });
      });
}

bool ThumbnailProvider::waitFor(Uuid id, Completion completion) {
  auto& completions = waiting_[id];
  completions.push_back(std::move(completion));
  return completions.size() == 1;
}

void ThumbnailProvider::finish(Uuid id, double scale, const SharedBitmap& picture) {
  const auto waiting = waiting_.extract(id);
  if (waiting.empty()) return;
  if (picture && scale >= scale_) keep(id, picture);
  for (const auto& completion : waiting.mapped()) completion(picture);
}

void ThumbnailProvider::keep(Uuid id, const SharedBitmap& picture) {
  if (kept_.insert(id, picture)) keptBytes_ += bytesOf(*picture);
  while (kept_.size() > countLimit || keptBytes_ > byteLimit) {
    keptBytes_ -= bytesOf(*kept_.takeOldest());
  }
}

/// What was made before a sharper screen came.
void ThumbnailProvider::dropBlurred() {
  const double scale = screenScale();
  if (scale > scale_) {
    kept_.clear();
    keptBytes_ = 0;
  }
  scale_ = scale;
}

double ThumbnailProvider::screenScale() const {
  const auto screens = services_.screens.screens();
  const auto sharpest = std::max_element(
      screens.begin(), screens.end(),
      [](const Screen& one, const Screen& other) { return one.scale < other.scale; });
  return sharpest != screens.end() ? sharpest->scale : scaleWithoutScreen;
}

PixelSize ThumbnailProvider::largestPicture() const {
  const auto& items = store_.items();
  const auto shown = std::count_if(
      items.begin(), items.end(), [](const ClipItem& item) { return item.kind != ClipKind::text; });
  const double scale =
      pictureScale(scale_, largestShown, byteLimit, static_cast<std::size_t>(shown));
  return {static_cast<int>(largestShown.width * scale),
          static_cast<int>(largestShown.height * scale)};
}

}  // namespace vantorel
