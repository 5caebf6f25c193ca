// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/Bytes.h"

namespace vantorel {

// How desktops share the thumbnails they made, by the freedesktop convention: a PNG per size,
// called after its file's URI, that says of which file in which state it is. Pure, any thread.

/// The file's URI as those spell it who fill the cache: whoever escapes one character more or less
/// looks for another thumbnail. The path is absolute.
[[nodiscard]] std::string thumbnailUri(const std::filesystem::path& file);

/// A directory of the cache and the longer side of its thumbnails in pixels.
struct ThumbnailSize {
  std::string_view directory;
  int side = 0;
};

enum class ThumbnailFit { largeEnough, any };

/// Where to look for a thumbnail of that many pixels, the best place first: the smallest that is
/// large enough, the larger ones, and, if any will do, the smaller ones.
[[nodiscard]] std::vector<ThumbnailSize> thumbnailSizes(int pixels, ThumbnailFit fit);

/// What a thumbnail says about its file; empty where it says nothing.
struct ThumbnailOrigin {
  std::string uri;
  std::string changeTime;  // seconds since 1970
};

/// Whether it was made of the file with that URI as it is since `changeTime`.
[[nodiscard]] bool isThumbnailOf(const ThumbnailOrigin& origin, std::string_view uri,
                                 std::int64_t changeTime);

/// Whether a file that begins so is a picture in one of the usual formats, whatever its name.
[[nodiscard]] bool beginsLikePicture(ByteView start);

}  // namespace vantorel
