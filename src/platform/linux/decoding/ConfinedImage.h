// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <mutex>

#include "platform/Image.h"

namespace vantorel {

class PictureWorker;

/// An encoded image whose other forms are made elsewhere: its pixels never come into this process.
/// What has been made is kept.
class ConfinedImage : public Image {
 public:
  /// `png` is null when `encoded` is another format and it has not been made yet.
  ConfinedImage(std::shared_ptr<PictureWorker> worker, std::shared_ptr<const Bytes> encoded,
                Size size, std::shared_ptr<const Bytes> png);

  [[nodiscard]] Size size() const override { return size_; }
  [[nodiscard]] std::shared_ptr<const Bytes> pngData() const override;
  [[nodiscard]] std::shared_ptr<const Bytes> jpegData(double compression) const override;

 private:
  struct Jpeg {
    double compression = -1;
    std::shared_ptr<const Bytes> data;
  };

  const std::shared_ptr<PictureWorker> worker_;
  const std::shared_ptr<const Bytes> encoded_;
  const Size size_;

  mutable std::mutex mutex_;  // guards what follows; held while encoding, so that it is done once
  mutable std::shared_ptr<const Bytes> png_;
  mutable bool pngIsKnown_;
  mutable Jpeg jpeg_;
};

}  // namespace vantorel
