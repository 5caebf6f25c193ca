// SPDX-License-Identifier: MIT
#include "unit/platform/qt/ImageSamples.h"

#include <QBuffer>
#include <QImageWriter>
#include <stdexcept>
#include <string>

namespace vantorel {

using namespace std::string_literals;

QImage colourful(int width, int height, Transparency transparency) {
  const bool hasAlpha = transparency == Transparency::some;
  QImage pixels(width, height, hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const int alpha = hasAlpha ? (x * 11 + y) % 256 : 255;
      pixels.setPixel(x, y,
                      qRgba((x * 7 + y * 3) % 256, (x * 5 + y * 13) % 256, x * y % 256, alpha));
    }
  }
  return pixels;
}

Bytes encoded(const QImage& pixels, const char* format, int quality) {
  QByteArray data;
  QBuffer buffer(&data);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, format);
  writer.setQuality(quality);
  if (!writer.write(pixels)) throw std::runtime_error(writer.errorString().toStdString());
  return copied({data.constData(), static_cast<std::size_t>(data.size())});
}

Bytes withOrientation(const Bytes& jpeg, char orientation) {
  const auto exif =
      "Exif\0\0MM\0\x2A\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0"s + orientation + "\0\0\0\0\0\0"s;
  const auto length = exif.size() + 2;
  const auto segment =
      copied("\xFF\xE1"s + static_cast<char>(length >> 8) + static_cast<char>(length) + exif);
  auto turned = jpeg;
  turned.insert(turned.begin() + 2, segment.begin(), segment.end());
  return turned;
}

std::shared_ptr<const Bytes> shared(Bytes bytes) {
  return std::make_shared<const Bytes>(std::move(bytes));
}

Bytes copied(std::string_view text) {
  const auto view = bytesOf(text);
  return {view.begin(), view.end()};
}

}  // namespace vantorel
