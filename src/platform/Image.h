// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "base/Bytes.h"
#include "platform/Bitmap.h"

namespace vantorel {

/// An immutable image. Pixels are decoded when first needed and shared. Every operation may be
/// called on any thread and may take as long as decoding or encoding the pixels takes, except
/// where said.
class Image {
 public:
  virtual ~Image() = default;

  /// Answers at once.
  [[nodiscard]] virtual Size size() const = 0;

  /// The PNG form: the very bytes when the image was made from PNG (answers at once), else
  /// encoded once, losslessly, and kept. Null when the pixels cannot be read.
  [[nodiscard]] virtual std::shared_ptr<const Bytes> pngData() const = 0;

  /// A JPEG form at `compression` from 0 (smallest) to 1 (best). Transparent pixels are laid over
  /// white. Null when the pixels cannot be read.
  [[nodiscard]] virtual std::shared_ptr<const Bytes> jpegData(double compression) const = 0;
};

/// Reads encoded images.
class ImageDecoder {
 public:
  virtual ~ImageDecoder() = default;

  /// The image in `bytes`, of any format the desktop knows; the bytes are kept, not copied. Null
  /// when they are no image, are damaged, or claim more pixels than the program will ever hold in
  /// memory. PNG and JPEG are checked by their structure (headers, lengths, checksums) without
  /// decoding every pixel, so this answers within a few milliseconds for them; other formats are
  /// decoded. Any thread.
  [[nodiscard]] virtual std::shared_ptr<const Image> decode(
      std::shared_ptr<const Bytes> bytes) const = 0;

  /// The picture in `encoded`, turned as it is meant to be seen and scaled down with its
  /// proportions to fit into `fitting`, never up; its size in points is that of the whole image.
  /// Null when `decode` would answer null, or the pixels cannot be read. May take as long as
  /// decoding all pixels takes. Any thread.
  [[nodiscard]] virtual SharedBitmap bitmap(ByteView encoded, PixelSize fitting) const = 0;
};

}  // namespace vantorel
