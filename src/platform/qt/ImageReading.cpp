// SPDX-License-Identifier: MIT
#include "platform/qt/ImageReading.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>
#include <string_view>

#include "platform/qt/AreaAverage.h"
#include "platform/qt/BitmapPixels.h"
#include "platform/qt/ImageFormat.h"

namespace vantorel {
namespace {

using namespace std::string_view_literals;

/// Reads bytes that somebody else keeps, as what they begin as and as nothing else: a plug-in of
/// the toolkit that no format named is neither loaded nor asked.
class PictureReader {
 public:
  explicit PictureReader(ByteView bytes)
      : format_(imageFormatOf(bytes)),
        data_(QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()),
                                      static_cast<qsizetype>(bytes.size()))),
        buffer_(&data_),
        reader_(&buffer_, format_) {
    buffer_.open(QIODevice::ReadOnly);
    reader_.setAutoDetectImageFormat(false);
    reader_.setDecideFormatFromContent(false);
    reader_.setAutoTransform(true);
  }

  /// Whether there is a picture of acceptable size, as far as it can be told before reading.
  [[nodiscard]] bool announcesPicture() const {
    if (format_ == nullptr) return false;
    const QSize announced = reader_.size();
    return !announced.isValid() || accepts(announced);
  }
  [[nodiscard]] bool accepts(QSize size) const {
    return isAcceptable(encodedSize(size), isCommon() ? maxImagePixels : maxUncommonPixels);
  }
  [[nodiscard]] bool isJpeg() const { return format_ == "jpeg"sv; }
  [[nodiscard]] bool turnsOnItsSide() const {
    return (reader_.transformation() & QImageIOHandler::TransformationRotate90) != 0;
  }
  [[nodiscard]] QSize size() const { return reader_.size(); }
  void setScaledSize(QSize size) { reader_.setScaledSize(size); }
  /// Null when it is damaged, or larger than it announced and so not acceptable.
  [[nodiscard]] QImage read() {
    QImage pixels = reader_.read();
    return accepts(pixels.size()) ? pixels : QImage();
  }

 private:
  [[nodiscard]] bool isCommon() const { return isJpeg() || format_ == "png"sv; }
  static EncodedSize encodedSize(QSize size) {
    return {static_cast<std::uint32_t>(std::max(size.width(), 0)),
            static_cast<std::uint32_t>(std::max(size.height(), 0))};
  }

  const char* const format_;  // null: none that may be read
  QByteArray data_;
  QBuffer buffer_;
  QImageReader reader_;
};

QSize reducedSize(QSize whole, PixelSize fitting) {
  const auto reduced = vantorel::reducedSize({whole.width(), whole.height()}, fitting);
  return {reduced.width, reduced.height};
}

}  // namespace

QImage decodedPixels(ByteView bytes) {
  PictureReader reader(bytes);
  return reader.announcesPicture() ? reader.read() : QImage();
}

SharedBitmap reducedPixels(ByteView bytes, PixelSize fitting) {
  PictureReader reader(bytes);
  if (!reader.announcesPicture()) return nullptr;
  QSize whole = reader.size();
  if (reader.turnsOnItsSide()) whole.transpose();
  const bool skipsPixels = reader.isJpeg() && whole.isValid();
  if (skipsPixels) {
    // Most of the pixels of a photograph need not be decoded at all. It is turned afterwards.
    QSize reduced = reducedSize(whole, fitting);
    if (reader.turnsOnItsSide()) reduced.transpose();
    reader.setScaledSize(reduced);
  }
  QImage pixels = reader.read();
  if (pixels.isNull()) return nullptr;
  if (!skipsPixels) whole = pixels.size();
  // Transparent pixels weigh nothing in what they are mixed with.
  pixels.convertTo(QImage::Format_ARGB32_Premultiplied);
  const QSize reduced = reducedSize(pixels.size(), fitting);
  if (reduced != pixels.size()) {
    pixels = pixels.scaled(reduced, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  }
  return bitmapFrom(pixels,
                    Size{static_cast<double>(whole.width()), static_cast<double>(whole.height())});
}

}  // namespace vantorel
