// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <memory>
#include <mutex>

#include "platform/Image.h"
#include "platform/qt/ImageLimits.h"

namespace vantorel {

/// An image as the toolkit decodes it. One that came as PNG or JPEG keeps its bytes and is decoded
/// at each need, since pixels take ten times the memory; one of another format keeps its pixels.
/// What has been encoded is kept too.
class QtImage : public Image {
 public:
  /// PNG that has passed `checkedPng`, of that size.
  [[nodiscard]] static std::shared_ptr<const QtImage> fromPng(std::shared_ptr<const Bytes> png,
                                                              EncodedSize size);
  /// Any encoded image that is known to be whole; `size` is as a viewer sees it.
  [[nodiscard]] static std::shared_ptr<const QtImage> fromEncoded(
      std::shared_ptr<const Bytes> bytes, EncodedSize size);
  [[nodiscard]] static std::shared_ptr<const QtImage> fromPixels(QImage pixels);

  [[nodiscard]] Size size() const override { return size_; }
  [[nodiscard]] std::shared_ptr<const Bytes> pngData() const override;
  [[nodiscard]] std::shared_ptr<const Bytes> jpegData(double compression) const override;

  /// Turned as a viewer sees it; null when the encoded bytes turn out to be damaged. Any thread.
  [[nodiscard]] QImage pixels() const;

 private:
  struct Jpeg {
    int quality = -1;
    std::shared_ptr<const Bytes> data;
  };

  explicit QtImage(Size size) : size_(size) {}

  Size size_;
  std::shared_ptr<const Bytes> encoded_;  // null when there are pixels
  QImage pixels_;

  mutable std::mutex mutex_;  // guards what follows; held while encoding, so that it is done once
  mutable std::shared_ptr<const Bytes> png_;
  mutable bool pngIsKnown_ = false;
  mutable Jpeg jpeg_;
};

}  // namespace vantorel
