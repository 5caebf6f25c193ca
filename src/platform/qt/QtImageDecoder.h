#pragma once

#include "platform/Image.h"

namespace vantorel {

/// Reads images with the toolkit and the formats that it has plug-ins for: PNG, JPEG, BMP and GIF
/// always, TIFF, WebP and others where the system installed them. Needs no application object.
class QtImageDecoder : public ImageDecoder {
 public:
  /// Raises the toolkit's own limit on memory for one image to what the program accepts.
  QtImageDecoder();

  [[nodiscard]] std::shared_ptr<const Image> decode(
      std::shared_ptr<const Bytes> bytes) const override;
  [[nodiscard]] SharedBitmap bitmap(ByteView encoded, PixelSize fitting) const override;
};

}  // namespace vantorel
