// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/ThumbnailCache.h"

#include <QCryptographicHash>
#include <algorithm>
#include <utility>

#include "platform/linux/pictures/PictureReading.h"
#include "platform/qt/PngTexts.h"

namespace vantorel {

namespace {

constexpr std::uint64_t largestThumbnail = std::uint64_t{8} << 20U;  // bytes; 4 MiB of pixels

std::string fileNameOf(const std::string& uri) {
  const auto hash = QCryptographicHash::hash(
      QByteArray::fromRawData(uri.data(), static_cast<qsizetype>(uri.size())),
      QCryptographicHash::Md5);
  return hash.toHex().toStdString() + ".png";
}

ThumbnailOrigin originOf(const Bytes& bytes) {
  const auto texts = textsOfPng(bytes);
  const auto text = [&texts](const char* key) {
    const auto found = texts.find(key);
    return found != texts.end() ? found->second : std::string();
  };
  return {text("Thumb::URI"), text("Thumb::MTime")};
}

}  // namespace

ThumbnailCache::ThumbnailCache(FileSystem& files, const ImageDecoder& decoder,
                               std::filesystem::path directory)
    : files_(files), decoder_(decoder), directory_(std::move(directory)) {}

SharedBitmap ThumbnailCache::find(const std::string& uri, std::int64_t changeTime, PixelSize most,
                                  ThumbnailFit fit) const {
  if (directory_.empty()) return nullptr;
  const auto name = fileNameOf(uri);
  for (const auto& size : thumbnailSizes(std::max(most.width, most.height), fit)) {
    const auto bytes = files_.readFile(directory_ / size.directory / name, largestThumbnail);
    if (!bytes || !isThumbnailOf(originOf(*bytes), uri, changeTime)) continue;
    if (auto picture = pixelsWithin(decoder_, *bytes, most)) return picture;
  }
  return nullptr;
}

}  // namespace vantorel
