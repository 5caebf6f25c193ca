// SPDX-License-Identifier: MIT
#include "ui/looks/SamplePictures.h"

#include <QFont>
#include <QImage>
#include <QPainter>

namespace vantorel {
namespace {

SharedBitmap toBitmap(const QImage& image) {
  const QImage pixels = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  Bitmap bitmap;
  bitmap.size = {static_cast<double>(image.width()), static_cast<double>(image.height())};
  bitmap.pixelSize = {image.width(), image.height()};
  for (int y = 0; y < pixels.height(); ++y) {
    const auto* row = reinterpret_cast<const std::uint32_t*>(pixels.constScanLine(y));
    bitmap.pixels.insert(bitmap.pixels.end(), row, row + pixels.width());
  }
  return std::make_shared<const Bitmap>(std::move(bitmap));
}

}  // namespace

SharedBitmap screenshot(const QColor& paper) {
  QImage image(480, 270, QImage::Format_RGB32);
  image.fill(paper);
  QPainter painter(&image);
  painter.fillRect(0, 0, 480, 22, QColor(0x3d, 0x4b, 0x5f));
  painter.fillRect(0, 22, 110, 248, QColor(0x8f, 0xa8, 0xc4));
  for (int y = 46; y < 250; y += 22)
    painter.fillRect(130, y, 180 + y % 130, 8, QColor(0x9a, 0x9a, 0x9e));
  return toBitmap(image);
}

SharedBitmap logo() {
  QImage image(320, 240, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QColor(0x10, 0x10, 0x12), 26));
  painter.drawEllipse(QRectF(70, 30, 180, 180));
  return toBitmap(image);
}

SharedBitmap icon(const QColor& color, const char* letter, int side) {
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawRoundedRect(QRectF(side * 0.06, side * 0.06, side * 0.88, side * 0.88), side * 0.2,
                          side * 0.2);
  QFont font = painter.font();
  font.setPixelSize(side / 2);
  font.setBold(true);
  painter.setFont(font);
  painter.setPen(Qt::white);
  painter.drawText(image.rect(), Qt::AlignCenter, QString::fromUtf8(letter));
  return toBitmap(image);
}

}  // namespace vantorel
