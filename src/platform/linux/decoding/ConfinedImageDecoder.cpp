// SPDX-License-Identifier: MIT
#include "platform/linux/decoding/ConfinedImageDecoder.h"

#include <optional>
#include <utility>

#include "platform/linux/decoding/ConfinedImage.h"
#include "platform/qt/ImageFormat.h"
#include "platform/qt/JpegOrientation.h"
#include "platform/qt/JpegStructure.h"
#include "platform/qt/PngStructure.h"

namespace vantorel {
namespace {

Size points(EncodedSize size) {
  return {static_cast<double>(size.width), static_cast<double>(size.height)};
}

}  // namespace

ConfinedImageDecoder::ConfinedImageDecoder(const PictureWorker::Settings& settings)
    : converting_(std::make_shared<PictureWorker>(settings)),
      showing_(std::make_unique<PictureWorker>(settings)) {}

std::shared_ptr<const Image> ConfinedImageDecoder::decode(
    std::shared_ptr<const Bytes> bytes) const {
  if (!bytes || imageFormatOf(*bytes) == nullptr) return nullptr;
  std::optional<EncodedSize> size;
  std::shared_ptr<const Bytes> png;
  if (looksLikeJpeg(*bytes)) {
    size = checkedJpeg(*bytes);
    if (size) size = shownSize(*bytes, *size);
  } else {
    png = looksLikePng(*bytes) ? bytes : converting_->png(*bytes);
    if (png) size = checkedPng(*png);
  }
  if (!size) return nullptr;
  return std::make_shared<ConfinedImage>(converting_, std::move(bytes), points(*size),
                                         std::move(png));
}

SharedBitmap ConfinedImageDecoder::bitmap(ByteView encoded, PixelSize fitting) const {
  // Nobody is woken for what is none.
  return imageFormatOf(encoded) != nullptr ? showing_->bitmap(encoded, fitting) : nullptr;
}

void ConfinedImageDecoder::stopShowing() { showing_->stop(); }

void ConfinedImageDecoder::stopConverting() { converting_->stop(); }

}  // namespace vantorel
