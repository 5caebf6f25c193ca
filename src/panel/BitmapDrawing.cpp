// SPDX-License-Identifier: MIT
#include "panel/BitmapDrawing.h"

#include <QBrush>
#include <QPainter>
#include <algorithm>
#include <memory>

namespace vantorel::BitmapDrawing {
namespace {

// A much larger picture is first thinned out, which costs as little as what is left of it.
constexpr int roughFactor = 4;

constexpr QRgb lightSquare = 0xFFB9B9BC;
constexpr QRgb darkSquare = 0xFFA6A6AA;

bool isOpaque(QRgb pixel) { return qAlpha(pixel) == 255; }

}  // namespace

QImage wrapped(const SharedBitmap& bitmap) {
  if (!bitmap) return {};
  const auto [width, height] = bitmap->pixelSize;
  if (width <= 0 || height <= 0) return {};
  const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  if (bitmap->pixels.size() != count) return {};
  auto owner = std::make_unique<SharedBitmap>(bitmap);
  return {reinterpret_cast<const uchar*>(bitmap->pixels.data()),
          width,
          height,
          static_cast<qsizetype>(width) * 4,
          QImage::Format_ARGB32_Premultiplied,
          [](void* held) { delete static_cast<SharedBitmap*>(held); },
          owner.release()};
}

QImage scaled(const SharedBitmap& bitmap, QSize pixels) {
  QImage image = wrapped(bitmap);
  if (image.isNull()) return {};
  const QSize wanted = pixels.expandedTo({1, 1});
  const QSize rough = image.size().boundedTo(wanted * roughFactor);
  if (rough != image.size()) image = image.scaled(rough);
  return image.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
      .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

Coverage coverage(const QImage& image) {
  const int right = image.width() - 1;
  const int bottom = image.height() - 1;
  if (!isOpaque(image.pixel(0, 0)) && !isOpaque(image.pixel(right, 0)) &&
      !isOpaque(image.pixel(0, bottom)) && !isOpaque(image.pixel(right, bottom))) {
    return Coverage::partialCorners;
  }
  for (int y = 0; y <= bottom; ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    if (!std::all_of(row, row + image.width(), isOpaque)) return Coverage::partial;
  }
  return Coverage::full;
}

void fillTransparencyPattern(QImage& image, int squarePixels) {
  for (int y = 0; y < image.height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      const bool dark = (x / squarePixels + y / squarePixels) % 2 != 0;
      row[x] = dark ? darkSquare : lightSquare;
    }
  }
}

QImage rounded(const QImage& image, double radius) {
  QImage result(image.size(), QImage::Format_ARGB32_Premultiplied);
  result.fill(Qt::transparent);
  QPainter painter(&result);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QBrush(image));
  painter.drawRoundedRect(QRectF(result.rect()), radius, radius);
  return result;
}

}  // namespace vantorel::BitmapDrawing
