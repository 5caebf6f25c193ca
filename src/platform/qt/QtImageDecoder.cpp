// SPDX-License-Identifier: MIT
#include "platform/qt/QtImageDecoder.h"

#include <QImageReader>
#include <new>
#include <utility>

#include "platform/qt/ImageReading.h"
#include "platform/qt/JpegOrientation.h"
#include "platform/qt/JpegStructure.h"
#include "platform/qt/PngReduction.h"
#include "platform/qt/PngStructure.h"
#include "platform/qt/QtImage.h"

namespace vantorel {

QtImageDecoder::QtImageDecoder() {
  constexpr std::uint64_t bytesPerPixel = 4;
  constexpr std::uint64_t bytesPerMebibyte = 1'048'576;
  QImageReader::setAllocationLimit(
      static_cast<int>(maxImagePixels * bytesPerPixel / bytesPerMebibyte + 1));
}

std::shared_ptr<const Image> QtImageDecoder::decode(std::shared_ptr<const Bytes> bytes) const {
  if (!bytes) return nullptr;
  if (looksLikePng(*bytes)) {
    const auto size = checkedPng(*bytes);
    return size ? QtImage::fromPng(std::move(bytes), *size) : nullptr;
  }
  if (looksLikeJpeg(*bytes)) {
    const auto size = checkedJpeg(*bytes);
    if (!size) return nullptr;
    const auto shown = shownSize(*bytes, *size);
    return QtImage::fromEncoded(std::move(bytes), shown);
  }
  QImage pixels = decodedPixels(*bytes);
  return pixels.isNull() ? nullptr : QtImage::fromPixels(std::move(pixels));
}

SharedBitmap QtImageDecoder::bitmap(ByteView encoded, PixelSize fitting) const {
  try {
    if (looksLikePng(encoded)) return reducedPng(encoded, fitting);
    if (looksLikeJpeg(encoded) && !checkedJpeg(encoded)) return nullptr;
    return reducedPixels(encoded, fitting);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace vantorel
