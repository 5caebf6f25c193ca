#include "ui/qt/ImageSamples.h"

#include <QBuffer>
#include <QImageWriter>
#include <stdexcept>

namespace vantorel {

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

std::shared_ptr<const Bytes> shared(Bytes bytes) {
  return std::make_shared<const Bytes>(std::move(bytes));
}

Bytes copied(std::string_view text) {
  const auto view = bytesOf(text);
  return {view.begin(), view.end()};
}

}  // namespace vantorel
