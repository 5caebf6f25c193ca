// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "base/Bytes.h"
#include "platform/Bitmap.h"
#include "platform/qt/AreaAverage.h"

struct png_struct_def;
struct png_info_def;

namespace vantorel {

/// Decodes a PNG row by row, whatever its kind of pixels, to eight bits a channel. Colours are
/// taken as they are: neither a profile nor a gamma changes them.
class PngRows {
 public:
  /// `png` has passed `checkedPng`, and outlives this.
  explicit PngRows(ByteView png);
  ~PngRows();
  PngRows(const PngRows&) = delete;
  PngRows& operator=(const PngRows&) = delete;

  /// Reads what precedes the pixels; false when it is damaged, or there is no memory. The other
  /// operations wait for it.
  [[nodiscard]] bool begin();

  [[nodiscard]] PixelSize size() const { return size_; }
  [[nodiscard]] PixelBytes pixelBytes() const { return pixelBytes_; }
  /// Whether the rows come in passes, each refining the picture, so that none is whole before all
  /// have been read. Such a PNG cannot be read here.
  [[nodiscard]] bool isInterlaced() const { return isInterlaced_; }

  /// Puts the next row into `row`, which has room for it; false when the pixels are damaged.
  [[nodiscard]] bool read(std::uint8_t* row);

 private:
  void take(std::uint8_t* destination, std::size_t length);
  void readHeader();

  ByteView rest_;
  png_struct_def* png_ = nullptr;
  png_info_def* info_ = nullptr;
  PixelSize size_;
  PixelBytes pixelBytes_ = PixelBytes::redGreenBlue;
  bool isInterlaced_ = false;
};

}  // namespace vantorel
