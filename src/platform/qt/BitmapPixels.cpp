// SPDX-License-Identifier: MIT
#include "platform/qt/BitmapPixels.h"

#include <cstring>

namespace vantorel {

SharedBitmap bitmapFrom(const QImage& pixels, Size size) {
  const QImage rows = pixels.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  if (rows.isNull()) return nullptr;
  auto bitmap = std::make_shared<Bitmap>();
  bitmap->size = size;
  bitmap->pixelSize = {rows.width(), rows.height()};
  const auto width = static_cast<std::size_t>(rows.width());
  bitmap->pixels.resize(width * static_cast<std::size_t>(rows.height()));
  for (int y = 0; y < rows.height(); ++y) {
    std::memcpy(&bitmap->pixels[static_cast<std::size_t>(y) * width], rows.constScanLine(y),
                width * sizeof(std::uint32_t));
  }
  return bitmap;
}

}  // namespace vantorel
