// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/Bytes.h"

namespace vantorel {

/// The pixels of an encoded picture, a few rows at a time, so that a picture of any size takes the
/// memory of those few.
class PictureRows {
 public:
  virtual ~PictureRows() = default;
  [[nodiscard]] virtual int width() const = 0;
  [[nodiscard]] virtual int height() const = 0;
  /// Appends up to `count` rows to `pixels`, 0x00RRGGBB, what is transparent laid over white.
  /// Answers how many it appended: fewer at the end, or where the picture is damaged.
  [[nodiscard]] virtual int read(int count, std::vector<std::uint32_t>& pixels) = 0;
};

/// A PNG or JPEG picture; the bytes outlive the result. Null when they are neither, their head is
/// damaged, or they claim to be larger than what is worth reading. One thread.
[[nodiscard]] std::unique_ptr<PictureRows> openPicture(ByteView bytes);

/// Whether a picture of this size is read at all.
[[nodiscard]] bool isReadableSize(std::uint32_t width, std::uint32_t height);

/// Null unless the bytes are of that format.
[[nodiscard]] std::unique_ptr<PictureRows> openPng(ByteView bytes);
[[nodiscard]] std::unique_ptr<PictureRows> openJpeg(ByteView bytes);

}  // namespace vantorel
