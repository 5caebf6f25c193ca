// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace vantorel {

/// Points; whole for every image that comes from a clipboard.
struct Size {
  double width = 0;
  double height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

/// A picture of so many pixels, not of so many points.
struct PixelSize {
  int width = 0;
  int height = 0;
  friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// Pixels ready to be drawn, immutable and shared between threads.
struct Bitmap {
  /// What the picture measures in points, which is what its proportions and its natural size come
  /// from; the pixels may be fewer (it was scaled down to what is shown) or more (a sharp screen).
  Size size;
  PixelSize pixelSize;
  /// Rows from the top without padding, one pixel each: 0xAARRGGBB, colours multiplied by alpha.
  std::vector<std::uint32_t> pixels;
  friend bool operator==(const Bitmap&, const Bitmap&) = default;
};

using SharedBitmap = std::shared_ptr<const Bitmap>;

}  // namespace vantorel
