#include "platform/qt/ImageReading.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>
#include <array>
#include <string_view>

#include "platform/qt/AreaAverage.h"
#include "platform/qt/BitmapPixels.h"

namespace vantorel {
namespace {

constexpr std::array<std::string_view, 15> pictureFormats = {"png", "jpeg", "jpg",  "bmp",  "dib",
                                                             "gif", "tif",  "tiff", "webp", "ico",
                                                             "jp2", "avif", "heif", "heic", "jxl"};

/// A device over bytes that somebody else keeps.
class ByteSource {
 public:
  explicit ByteSource(ByteView bytes)
      : data_(QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()),
                                      static_cast<qsizetype>(bytes.size()))),
        buffer_(&data_) {
    buffer_.open(QIODevice::ReadOnly);
  }
  [[nodiscard]] QIODevice* device() { return &buffer_; }

 private:
  QByteArray data_;
  QBuffer buffer_;
};

EncodedSize encodedSize(QSize size) {
  return {static_cast<std::uint32_t>(std::max(size.width(), 0)),
          static_cast<std::uint32_t>(std::max(size.height(), 0))};
}

bool isPicture(const QByteArray& format) {
  const std::string_view name(format.constData(), static_cast<std::size_t>(format.size()));
  return std::find(pictureFormats.begin(), pictureFormats.end(), name) != pictureFormats.end();
}

/// Whether the reader has a picture of acceptable size, as far as it can be told before reading.
bool announcesPicture(const QImageReader& reader) {
  if (!isPicture(reader.format())) return false;
  const QSize announced = reader.size();
  return !announced.isValid() || isAcceptable(encodedSize(announced));
}

bool turnsOnItsSide(const QImageReader& reader) {
  return (reader.transformation() & QImageIOHandler::TransformationRotate90) != 0;
}

QSize reducedSize(QSize whole, PixelSize fitting) {
  const auto reduced = vantorel::reducedSize({whole.width(), whole.height()}, fitting);
  return {reduced.width, reduced.height};
}

}  // namespace

QImage decodedPixels(ByteView bytes) {
  ByteSource source(bytes);
  QImageReader reader(source.device(), QImageReader::imageFormat(source.device()));
  reader.setAutoTransform(true);
  if (!announcesPicture(reader)) return {};
  QImage pixels = reader.read();
  if (pixels.isNull() || !isAcceptable(encodedSize(pixels.size()))) return {};
  return pixels;
}

SharedBitmap reducedPixels(ByteView bytes, PixelSize fitting) {
  ByteSource source(bytes);
  QImageReader reader(source.device(), QImageReader::imageFormat(source.device()));
  reader.setAutoTransform(true);
  if (!announcesPicture(reader)) return nullptr;
  QSize whole = reader.size();
  if (turnsOnItsSide(reader)) whole.transpose();
  const bool skipsPixels = reader.format() == "jpeg" && whole.isValid();
  if (skipsPixels) {
    // Most of the pixels of a photograph need not be decoded at all. It is turned afterwards.
    QSize reduced = reducedSize(whole, fitting);
    if (turnsOnItsSide(reader)) reduced.transpose();
    reader.setScaledSize(reduced);
  }
  QImage pixels = reader.read();
  if (pixels.isNull() || !isAcceptable(encodedSize(pixels.size()))) return nullptr;
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

EncodedSize shownSize(ByteView bytes, EncodedSize stored) {
  ByteSource source(bytes);
  QImageReader reader(source.device());
  return turnsOnItsSide(reader) ? EncodedSize{stored.height, stored.width} : stored;
}

}  // namespace vantorel
