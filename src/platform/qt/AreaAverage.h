// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/Bitmap.h"

namespace vantorel {

/// What one pixel of an incoming row consists of, one byte each.
enum class PixelBytes : std::uint8_t { redGreenBlue = 3, redGreenBlueAlpha = 4 };

/// `whole` scaled down with its proportions to fit into `fitting`, never up, and no side shorter
/// than one pixel.
[[nodiscard]] PixelSize reducedSize(PixelSize whole, PixelSize fitting);

/// Scales a picture down while its rows come in, so that it is never in memory as a whole. Every
/// pixel of the result is the mean of the area that it stands for, exact to the last bit; pixels
/// weigh as much as they are opaque.
class AreaAverage {
 public:
  /// No side of `whole` is longer than `maxImageSide`, none of `reduced` longer than that side of
  /// `whole` or empty.
  AreaAverage(PixelSize whole, PixelSize reduced, PixelBytes pixelBytes);

  /// The next row from the top: as many pixels as the whole is wide, not multiplied by alpha.
  /// Called exactly once for each.
  void addRow(const std::uint8_t* row);

  /// The picture as a `Bitmap` has it, once all rows have come in.
  [[nodiscard]] std::vector<std::uint32_t> takePixels() { return std::move(pixels_); }

 private:
  void accumulate(const std::uint8_t* row, std::uint32_t weight);
  void finishRow();

  PixelSize whole_;
  PixelSize reduced_;
  PixelBytes pixelBytes_;
  std::uint64_t divisor_;
  // One for each byte of a row: weighted by height, and by alpha where there is one.
  std::vector<std::uint32_t> columns_;
  // How much of the height of a row of the result has come in, in parts of which a row of the
  // whole has as many as the result has rows.
  std::uint32_t filled_ = 0;
  std::vector<std::uint32_t> pixels_;
};

}  // namespace vantorel
