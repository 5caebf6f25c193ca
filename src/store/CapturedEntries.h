// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Image.h"
#include "store/ClipItem.h"
#include "store/SourceApp.h"

namespace vantorel {

/// Extensions, in lower case, by which one file counts as a video.
inline constexpr std::array<std::string_view, 6> videoExtensions = {"mov", "mp4", "m4v",
                                                                    "avi", "mkv", "webm"};
/// The title of a single video: nothing else in an entry tells it from another file.
inline constexpr std::string_view videoTitle = "Video";
[[nodiscard]] bool isVideo(const ClipItem& item);

/// A new entry for a text that is not blank.
[[nodiscard]] ClipItem textEntry(std::string text, const SourceApp& source, Date now);

/// A new entry for a list of files that is not empty.
[[nodiscard]] ClipItem filesEntry(std::vector<std::string> paths, const SourceApp& source,
                                  Date now);

struct EncodedImage {
  std::shared_ptr<const Bytes> bytes;
  std::string extension;
};
/// Losslessly if that takes at most `maxBytes`, else as a JPEG if that does, else not at all:
/// never scaled down.
[[nodiscard]] std::optional<EncodedImage> encodedImage(const Image& image, std::size_t maxBytes);

/// A new entry for an image that is stored under `assetFilename`.
[[nodiscard]] ClipItem imageEntry(Size size, std::string assetFilename, std::string contentHash,
                                  const SourceApp& source, Date now);

}  // namespace vantorel
