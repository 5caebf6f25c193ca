// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/ThumbnailNames.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/PercentCoding.h"

namespace vantorel {

namespace {

using namespace std::string_view_literals;

constexpr std::array<ThumbnailSize, 4> sizes = {
    {{"normal", 128}, {"large", 256}, {"x-large", 512}, {"xx-large", 1024}}};

}  // namespace

std::string thumbnailUri(const std::filesystem::path& file) {
  return "file://" + percentEncoded(file.native(), "!$&'()*+,-./:=@_~");
}

std::vector<ThumbnailSize> thumbnailSizes(int pixels, ThumbnailFit fit) {
  const auto* const enough = std::find_if(
      sizes.begin(), sizes.end(), [pixels](const auto& size) { return size.side >= pixels; });
  std::vector<ThumbnailSize> result(enough, sizes.end());
  if (fit == ThumbnailFit::any) {
    result.insert(result.end(), std::make_reverse_iterator(enough), sizes.rend());
  }
  return result;
}

bool isThumbnailOf(const ThumbnailOrigin& origin, std::string_view uri, std::int64_t changeTime) {
  if (origin.uri != uri) return false;
  const auto& text = origin.changeTime;
  std::int64_t stated = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), stated);
  // Some write a fraction behind the seconds.
  const bool isNumber = error == std::errc() && (end == text.data() + text.size() || *end == '.');
  return isNumber && stated == changeTime;
}

bool beginsLikePicture(ByteView start) {
  const auto text = textOf(start);
  for (const auto magic :
       {"\x89PNG\r\n\x1A\n"sv, "\xFF\xD8\xFF"sv, "GIF87a"sv, "GIF89a"sv, "II*\0"sv, "MM\0*"sv}) {
    if (text.starts_with(magic)) return true;
  }
  constexpr std::size_t webpAt = 8;
  return text.starts_with("RIFF") && text.size() >= webpAt &&
         text.substr(webpAt).starts_with("WEBP");
}

}  // namespace vantorel
