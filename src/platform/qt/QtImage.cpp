// SPDX-License-Identifier: MIT
#include "platform/qt/QtImage.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageWriter>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "platform/qt/ImageReading.h"
#include "platform/qt/PngWriter.h"

namespace vantorel {
namespace {

Size points(EncodedSize size) {
  return {static_cast<double>(size.width), static_cast<double>(size.height)};
}

QImage overWhite(const QImage& pixels) {
  if (!pixels.hasAlphaChannel()) return pixels;
  QImage opaque(pixels.size(), QImage::Format_RGB32);
  if (opaque.isNull()) return {};
  opaque.fill(Qt::white);
  opaque.setColorSpace(pixels.colorSpace());
  QPainter(&opaque).drawImage(QRect(QPoint(0, 0), pixels.size()), pixels);
  return opaque;
}

std::shared_ptr<const Bytes> encodedJpeg(const QImage& pixels, int quality) {
  const QImage opaque = overWhite(pixels);
  if (opaque.isNull()) return nullptr;
  QByteArray encoded;
  QBuffer buffer(&encoded);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, "jpg");
  writer.setQuality(quality);
  if (!writer.write(opaque)) return nullptr;
  const auto view =
      std::as_bytes(std::span(encoded.constData(), static_cast<std::size_t>(encoded.size())));
  return std::make_shared<const Bytes>(view.begin(), view.end());
}

}  // namespace

std::shared_ptr<const QtImage> QtImage::fromPng(std::shared_ptr<const Bytes> png,
                                                EncodedSize size) {
  std::shared_ptr<QtImage> image(new QtImage(points(size)));
  image->encoded_ = png;
  image->png_ = std::move(png);
  image->pngIsKnown_ = true;
  return image;
}

std::shared_ptr<const QtImage> QtImage::fromEncoded(std::shared_ptr<const Bytes> bytes,
                                                    EncodedSize size) {
  std::shared_ptr<QtImage> image(new QtImage(points(size)));
  image->encoded_ = std::move(bytes);
  return image;
}

std::shared_ptr<const QtImage> QtImage::fromPixels(QImage pixels) {
  std::shared_ptr<QtImage> image(
      new QtImage(Size{static_cast<double>(pixels.width()), static_cast<double>(pixels.height())}));
  image->pixels_ = std::move(pixels);
  return image;
}

std::shared_ptr<const Bytes> QtImage::pngData() const {
  const std::lock_guard lock(mutex_);
  if (!pngIsKnown_) {
    png_ = encodedPng(pixels());
    pngIsKnown_ = true;
  }
  return png_;
}

std::shared_ptr<const Bytes> QtImage::jpegData(double compression) const {
  const int quality = static_cast<int>(std::lround(std::clamp(compression, 0.0, 1.0) * 100));
  const std::lock_guard lock(mutex_);
  if (jpeg_.quality != quality) jpeg_ = {quality, encodedJpeg(pixels(), quality)};
  return jpeg_.data;
}

QImage QtImage::pixels() const { return encoded_ ? decodedPixels(*encoded_) : pixels_; }

}  // namespace vantorel
