// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "base/FileSystem.h"
#include "platform/Bitmap.h"
#include "platform/Image.h"
#include "platform/linux/pictures/ThumbnailNames.h"

namespace vantorel {

/// The thumbnails that the desktop's programs share. Only read: what the history holds must not be
/// found in there later. Any thread.
class ThumbnailCache {
 public:
  /// `directory` is the cache's own, "thumbnails". The others outlive this.
  ThumbnailCache(FileSystem& files, const ImageDecoder& decoder, std::filesystem::path directory);

  /// The thumbnail of the file with that URI as it is since `changeTime` (seconds since 1970),
  /// fitted into `most`; null when there is none.
  [[nodiscard]] SharedBitmap find(const std::string& uri, std::int64_t changeTime, PixelSize most,
                                  ThumbnailFit fit) const;

 private:
  FileSystem& files_;
  const ImageDecoder& decoder_;
  const std::filesystem::path directory_;
};

}  // namespace vantorel
