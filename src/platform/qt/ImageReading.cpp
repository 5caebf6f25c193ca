#include "platform/qt/ImageReading.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>
#include <array>
#include <string_view>

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

PixelSize pixelSize(QSize size) {
  return {static_cast<std::uint32_t>(std::max(size.width(), 0)),
          static_cast<std::uint32_t>(std::max(size.height(), 0))};
}

bool isPicture(const QByteArray& format) {
  const std::string_view name(format.constData(), static_cast<std::size_t>(format.size()));
  return std::find(pictureFormats.begin(), pictureFormats.end(), name) != pictureFormats.end();
}

}  // namespace

QImage decodedPixels(ByteView bytes) {
  ByteSource source(bytes);
  const QByteArray format = QImageReader::imageFormat(source.device());
  if (!isPicture(format)) return {};
  QImageReader reader(source.device(), format);
  reader.setAutoTransform(true);
  const QSize announced = reader.size();
  if (announced.isValid() && !isAcceptable(pixelSize(announced))) return {};
  QImage pixels = reader.read();
  if (pixels.isNull() || !isAcceptable(pixelSize(pixels.size()))) return {};
  return pixels;
}

PixelSize shownSize(ByteView bytes, PixelSize stored) {
  ByteSource source(bytes);
  QImageReader reader(source.device());
  const bool isTurned = (reader.transformation() & QImageIOHandler::TransformationRotate90) != 0;
  return isTurned ? PixelSize{stored.height, stored.width} : stored;
}

}  // namespace vantorel
