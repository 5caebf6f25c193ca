// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Image.h"

namespace vantorel {

/// Reads images with the toolkit: PNG, JPEG, BMP, GIF and ICO always, TIFF and WebP where the
/// system installed the plug-ins; nothing else, whatever is installed. Bytes from outside are for a
/// process that can do nothing else. Needs no application object.
class QtImageDecoder : public ImageDecoder {
 public:
  /// Raises the toolkit's own limit on memory for one image to what the program accepts.
  QtImageDecoder();

  [[nodiscard]] std::shared_ptr<const Image> decode(
      std::shared_ptr<const Bytes> bytes) const override;
  [[nodiscard]] SharedBitmap bitmap(ByteView encoded, PixelSize fitting) const override;
};

}  // namespace vantorel
