// SPDX-License-Identifier: MIT
#include "platform/linux/decoding/ConfinedImage.h"

#include <algorithm>
#include <utility>

#include "platform/linux/decoding/PictureWorker.h"
#include "platform/qt/JpegStructure.h"
#include "platform/qt/PngStructure.h"

namespace vantorel {

ConfinedImage::ConfinedImage(std::shared_ptr<PictureWorker> worker,
                             std::shared_ptr<const Bytes> encoded, Size size,
                             std::shared_ptr<const Bytes> png)
    : worker_(std::move(worker)),
      encoded_(std::move(encoded)),
      size_(size),
      png_(std::move(png)),
      pngIsKnown_(png_ != nullptr) {}

std::shared_ptr<const Bytes> ConfinedImage::pngData() const {
  const std::lock_guard lock(mutex_);
  if (!pngIsKnown_) {
    auto png = worker_->png(*encoded_);
    if (png && checkedPng(*png)) png_ = std::move(png);
    pngIsKnown_ = true;
  }
  return png_;
}

std::shared_ptr<const Bytes> ConfinedImage::jpegData(double compression) const {
  const double wanted = std::clamp(compression, 0.0, 1.0);
  const std::lock_guard lock(mutex_);
  if (jpeg_.compression != wanted) {
    auto jpeg = worker_->jpeg(*encoded_, wanted);
    jpeg_ = {wanted, jpeg && checkedJpeg(*jpeg) ? std::move(jpeg) : nullptr};
  }
  return jpeg_.data;
}

}  // namespace vantorel
