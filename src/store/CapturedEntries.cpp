// SPDX-License-Identifier: MIT
#include "store/CapturedEntries.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "base/ContentFingerprint.h"
#include "platform/CaptureLimits.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

ClipItem newEntry(ClipKind kind, const SourceApp& source, Date now) {
  ClipItem item;
  item.id = Uuid::random();
  item.kind = kind;
  item.createdAt = now;
  item.sourceAppName = source.name;
  item.sourceBundleIdentifier = source.bundleIdentifier;
  item.isPinned = false;
  return item;
}

/// A trailing slash, as directories may have, does not count; the root is its own name.
std::string_view lastComponent(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  const auto slash = path.rfind('/');
  if (slash == std::string_view::npos || path.size() == 1) return path;
  return path.substr(slash + 1);
}

bool hasVideoExtension(std::string_view path) {
  const std::string_view name = lastComponent(path);
  const auto point = name.rfind('.');
  if (point == std::string_view::npos || point == 0) return false;
  const std::string extension = lowerCased(name.substr(point + 1));
  return std::find(videoExtensions.begin(), videoExtensions.end(), extension) !=
         videoExtensions.end();
}

std::string title(const std::vector<std::string>& paths) {
  if (paths.size() > 1) return std::to_string(paths.size()) + " files";
  return hasVideoExtension(paths.front()) ? std::string(videoTitle) : "File";
}

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
  std::string text;
  for (const std::string& part : parts) {
    if (&part != &parts.front()) text += separator;
    text += part;
  }
  return text;
}

std::string wholePoints(double length) {
  constexpr double most = 1e15;  // beyond, a double is no longer a count
  return std::to_string(
      static_cast<std::int64_t>(std::isfinite(length) ? std::clamp(length, 0.0, most) : 0.0));
}

}  // namespace

bool isVideo(const ClipItem& item) {
  return item.kind == ClipKind::files && item.title == videoTitle;
}

ClipItem textEntry(std::string text, const SourceApp& source, Date now) {
  constexpr std::size_t previewCharacters = 500;
  ClipItem item = newEntry(ClipKind::text, source, now);
  item.title = "Text";
  item.preview = prefixOfCharacters(trimmed(text), previewCharacters);
  item.contentHash = ContentFingerprint::data(bytesOf(text));
  item.text = std::move(text);
  return item;
}

ClipItem filesEntry(std::vector<std::string> paths, const SourceApp& source, Date now) {
  ClipItem item = newEntry(ClipKind::files, source, now);
  item.title = title(paths);
  std::vector<std::string> names;
  names.reserve(paths.size());
  for (const std::string& path : paths) names.emplace_back(lastComponent(path));
  item.preview = validUtf8(joined(names, ", "));
  // NUL stands in no path, so no two lists are the same when joined by it.
  item.contentHash = ContentFingerprint::data(bytesOf(joined(paths, std::string_view("\0", 1))));
  item.filePaths = std::move(paths);
  return item;
}

std::optional<EncodedImage> encodedImage(const Image& image, std::size_t maxBytes) {
  const auto fits = [maxBytes](const std::shared_ptr<const Bytes>& bytes) {
    return bytes && bytes->size() <= maxBytes;
  };
  if (auto png = image.pngData(); fits(png)) return EncodedImage{std::move(png), "png"};
  if (auto jpeg = image.jpegData(jpegCompression); fits(jpeg)) {
    return EncodedImage{std::move(jpeg), "jpg"};
  }
  return std::nullopt;
}

ClipItem imageEntry(Size size, std::string assetFilename, std::string contentHash,
                    const SourceApp& source, Date now) {
  ClipItem item = newEntry(ClipKind::image, source, now);
  item.title = "Image";
  // In points, although it says px: the size at which the picture is seen.
  item.preview = wholePoints(size.width) + " × " + wholePoints(size.height) + " px";
  item.assetFilename = std::move(assetFilename);
  item.contentHash = std::move(contentHash);
  return item;
}

}  // namespace vantorel
