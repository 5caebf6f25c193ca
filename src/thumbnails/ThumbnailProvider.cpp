#include "thumbnails/ThumbnailProvider.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "store/AssetFolder.h"
#include "store/SealedFile.h"
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
  for (auto& [key, completions] : waiting_) {
    for (auto& completion : completions) {
      services_.dispatch.async([completion = std::move(completion)] { completion(nullptr); });
    }
  }
}

void ThumbnailProvider::requestThumbnail(const ClipItem& item, Completion completion) {
  if (!completion) completion = [](const SharedBitmap& /*picture*/) {};
  if (auto picture = find(item.id.string())) return completion(std::move(picture));
  switch (item.kind) {
    case ClipKind::text:
      return completion(nullptr);
    case ClipKind::image:
      return requestImage(item, std::move(completion));
    case ClipKind::files:
      return requestFile(item, std::move(completion));
  }
}

SharedBitmap ThumbnailProvider::cached(Uuid id) { return find(id.string()); }

void ThumbnailProvider::requestImage(const ClipItem& item, Completion completion) {
  const auto key = item.id.string();
  if (!waitFor(key, std::move(completion))) return;
  imageQueue_->async([this, key, name = item.assetFilename,
                      folder = AssetFolder(services_.files, store_.assetsUrl()),
                      storage = store_.secureStorage(), fitting = largestPicture(),
                      &images = services_.images, &main = services_.dispatch,
                      alive = std::weak_ptr(alive_)] {
    if (alive.expired()) return;
    SharedBitmap picture;
    if (auto sealed = name ? folder.read(*name) : std::nullopt) {
      const auto encoded = openedIfSealed(storage.get(), std::move(*sealed));
      if (encoded) picture = images.bitmap(*encoded, fitting);
    }
    main.async([this, alive, key, picture = std::move(picture)] {
      if (!alive.expired()) finish(key, picture);
    });
  });
}

void ThumbnailProvider::requestFile(const ClipItem& item, Completion completion) {
  if (item.filePaths.empty()) return completion(nullptr);
  const std::filesystem::path file(item.filePaths.front());
  if (services_.firstFileIsGone(item)) {
    return services_.icons.typeIcon(extensionOf(file), std::move(completion));
  }
  const auto key = item.id.string();
  if (waitFor(key, std::move(completion))) makeFileThumbnail(key, file);
}

void ThumbnailProvider::makeFileThumbnail(const std::string& key,
                                          const std::filesystem::path& file) {
  const auto store = [this, alive = std::weak_ptr(alive_), key](const SharedBitmap& picture) {
    if (!alive.expired()) finish(key, picture);
  };
  services_.fileThumbnails.generateBestRepresentation(
      file, fileThumbnailSize, screenScale(),
      [this, alive = std::weak_ptr(alive_), file, store,
       &main = services_.dispatch](const SharedBitmap& picture) {
        main.async([this, alive, file, store, picture] {
          if (alive.expired()) return;
          if (picture) return store(picture);
          services_.icons.fileIcon(file, store);
        });
      });
}

bool ThumbnailProvider::waitFor(const std::string& key, Completion completion) {
  auto& completions = waiting_[key];
  completions.push_back(std::move(completion));
  return completions.size() == 1;
}

void ThumbnailProvider::finish(const std::string& key, const SharedBitmap& picture) {
  const auto waiting = waiting_.extract(key);
  if (waiting.empty()) return;
  if (picture) keep(key, picture);
  for (const auto& completion : waiting.mapped()) completion(picture);
}

void ThumbnailProvider::keep(const std::string& key, SharedBitmap picture) {
  keptBytes_ += bytesOf(*picture);
  kept_.push_front({key, std::move(picture)});
  places_[key] = kept_.begin();
  while (kept_.size() > countLimit || (keptBytes_ > byteLimit && kept_.size() > 1)) {
    keptBytes_ -= bytesOf(*kept_.back().picture);
    places_.erase(kept_.back().key);
    kept_.pop_back();
  }
}

SharedBitmap ThumbnailProvider::find(const std::string& key) {
  const auto place = places_.find(key);
  if (place == places_.end()) return nullptr;
  kept_.splice(kept_.begin(), kept_, place->second);
  return kept_.front().picture;
}

double ThumbnailProvider::screenScale() const {
  const auto screen = services_.screens.mainScreen();
  return screen ? screen->scale : scaleWithoutScreen;
}

PixelSize ThumbnailProvider::largestPicture() const {
  const auto& items = store_.items();
  const auto shown = std::count_if(
      items.begin(), items.end(), [](const ClipItem& item) { return item.kind != ClipKind::text; });
  const double scale =
      pictureScale(screenScale(), largestShown, byteLimit, static_cast<std::size_t>(shown));
  return {static_cast<int>(largestShown.width * scale),
          static_cast<int>(largestShown.height * scale)};
}

}  // namespace vantorel
