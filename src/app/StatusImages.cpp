// SPDX-License-Identifier: MIT
#include "app/StatusImages.h"

#include <QImage>
#include <QPixmap>
#include <cstring>
#include <string>

#include "chrome/Symbols.h"
#include "platform/ApplicationId.h"

namespace vantorel {
namespace {

constexpr double points = 22;

SharedBitmap bitmap(const QImage& image) {
  auto picture = std::make_shared<Bitmap>();
  picture->size = {points, points};
  picture->pixelSize = {image.width(), image.height()};
  picture->pixels.resize(static_cast<std::size_t>(image.width()) * image.height());
  const auto rowBytes = static_cast<std::size_t>(image.width()) * sizeof(std::uint32_t);
  for (int y = 0; y < image.height(); ++y) {
    std::memcpy(&picture->pixels[static_cast<std::size_t>(y) * image.width()],
                image.constScanLine(y), rowBytes);
  }
  return picture;
}

QImage drawn(std::string_view symbol, int side) {
  const auto picture = Symbols::pixmap(symbol, points, Qt::black, side / points);
  if (!picture.isNull()) {
    return picture.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
  }
  QImage empty(side, side, QImage::Format_ARGB32_Premultiplied);
  empty.fill(Qt::transparent);
  return empty;
}

}  // namespace

StatusImage statusImage(bool isPaused) {
  const std::string_view symbol = isPaused ? "clipmb-template-paused" : "clipmb-template";
  return {.name = std::string(applicationId::name) + (isPaused ? "-paused-symbolic" : "-symbolic"),
          .drawn = [symbol](int side) { return bitmap(drawn(symbol, side)); }};
}

}  // namespace vantorel
