// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/reading/PictureRows.h"

namespace vantorel {

bool isReadableSize(std::uint32_t width, std::uint32_t height) {
  constexpr std::uint32_t longestSide = 32'768;
  constexpr std::uint64_t maxPixels = 100'000'000;
  return width > 0 && height > 0 && width <= longestSide && height <= longestSide &&
         std::uint64_t{width} * height <= maxPixels;
}

std::unique_ptr<PictureRows> openPicture(ByteView bytes) {
  auto picture = openPng(bytes);
  return picture ? std::move(picture) : openJpeg(bytes);
}

}  // namespace vantorel
