// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantorel {

/// Rows from the top without padding, one pixel each: 0x00RRGGBB.
struct ColourPicture {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;
};

/// Black letters on white, as an engine likes them: 0 is black.
struct GreyPicture {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> pixels;
};

/// How much each pixel belongs to something drawn on the paper: 0 is paper, 255 a full stroke,
/// whatever the colours of both were.
struct Ink {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> amounts;
};

/// From which amount on a pixel counts as part of a letter.
inline constexpr std::uint8_t inkThreshold = 105;

/// Pixels from `left` to `right` and from `top` to `bottom`, all of them included.
struct PixelBox {
  int left = 0;
  int top = 0;
  int right = -1;
  int bottom = -1;
  [[nodiscard]] int width() const { return right - left + 1; }
  [[nodiscard]] int height() const { return bottom - top + 1; }
  friend bool operator==(const PixelBox&, const PixelBox&) = default;
};

}  // namespace vantorel
