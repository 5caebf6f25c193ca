// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/Image.h"
#include "platform/linux/decoding/PictureWorker.h"

namespace vantorel {

/// Reads images without ever decoding one: here only the structure of PNG and JPEG is looked at,
/// which is enough to keep them. Pixels, and the PNG of every other format, are made by processes
/// that can do nothing else: one for what was copied, one for what is shown, so that a picture that
/// is slow to show keeps none from being captured.
class ConfinedImageDecoder : public ImageDecoder {
 public:
  explicit ConfinedImageDecoder(const PictureWorker::Settings& settings);

  [[nodiscard]] std::shared_ptr<const Image> decode(
      std::shared_ptr<const Bytes> bytes) const override;
  [[nodiscard]] SharedBitmap bitmap(ByteView encoded, PixelSize fitting) const override;

  /// From now on `bitmap` answers null, also where somebody waits for it: a slow picture must not
  /// hold up the program's end. Any thread, answers at once.
  void stopShowing();
  /// The same for what an image is converted to, when nobody will be given any more.
  void stopConverting();

 private:
  const std::shared_ptr<PictureWorker> converting_;  // shared with the images
  const std::unique_ptr<PictureWorker> showing_;
};

}  // namespace vantorel
