// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/PictureReading.h"

#include <QPainter>
#include <QSvgRenderer>
#include <string_view>
#include <utility>

#include "platform/qt/BitmapPixels.h"

namespace vantorel {

namespace {

constexpr int longestIcon = 1024;
constexpr int largestDrawing = 32'768;  // a side, in its own measure

QByteArray viewOf(ByteView bytes) {
  return QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()),
                                 static_cast<qsizetype>(bytes.size()));
}

/// Text that begins a document, or what a compressed one begins with.
bool looksLikeDrawing(ByteView bytes) {
  const auto text = textOf(bytes);
  if (text.starts_with("\x1F\x8B")) return true;
  const auto first = text.find_first_not_of("\xEF\xBB\xBF \t\r\n");
  return first != std::string_view::npos && text[first] == '<';
}

SharedBitmap drawnWithin(ByteView bytes, int side) {
  QSvgRenderer renderer;
  renderer.setFramesPerSecond(0);  // a clock would need an event loop on this thread
  renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  if (!renderer.load(viewOf(bytes))) return nullptr;
  const QSize own = renderer.defaultSize();
  if (own.isEmpty() || own.width() > largestDrawing || own.height() > largestDrawing) {
    return nullptr;
  }
  // A line stays a line.
  const QSize size = own.scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1});
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) return nullptr;
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.render(&painter);
  painter.end();
  return bitmapFrom(image, {static_cast<double>(size.width()), static_cast<double>(size.height())});
}

}  // namespace

SharedBitmap iconWithin(const ImageDecoder& decoder, ByteView bytes, int side) {
  if (side <= 0 || side > longestIcon) return nullptr;
  return looksLikeDrawing(bytes) ? drawnWithin(bytes, side)
                                 : pixelsWithin(decoder, bytes, {side, side});
}

SharedBitmap pixelsWithin(const ImageDecoder& decoder, ByteView bytes, PixelSize most) {
  if (most.width <= 0 || most.height <= 0) return nullptr;
  auto picture = decoder.bitmap(bytes, most);
  if (!picture) return nullptr;
  const auto [width, height] = picture->pixelSize;
  const Size size{static_cast<double>(width), static_cast<double>(height)};
  if (picture->size == size) return picture;
  auto copy = std::make_shared<Bitmap>(*picture);
  copy->size = size;
  return copy;
}

}  // namespace vantorel
