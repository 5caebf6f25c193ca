// SPDX-License-Identifier: MIT
#include "ui/looks/PictureComparison.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cstdlib>

namespace vantorel {
namespace {

using Color = std::array<int, 3>;

// Blurring reaches a pixel, and looking around reaches another.
constexpr int reach = 2;

/// A picture by pixels, read beyond its edges as its edges.
class Pixels {
 public:
  explicit Pixels(const QImage& image) : image_(image.convertToFormat(QImage::Format_RGB32)) {
    image_.setDevicePixelRatio(1);
  }

  [[nodiscard]] QRect bounds() const { return image_.rect(); }
  [[nodiscard]] QRgb at(int x, int y) const {
    const auto* line =
        reinterpret_cast<const QRgb*>(image_.constScanLine(std::clamp(y, 0, image_.height() - 1)));
    return line[std::clamp(x, 0, image_.width() - 1)];
  }
  /// The mean of the pixel and those around it.
  [[nodiscard]] Color blurred(int x, int y) const {
    constexpr int count = 9;
    Color sum{};
    for (int dy = -1; dy <= 1; ++dy) {
      for (int dx = -1; dx <= 1; ++dx) {
        const QRgb pixel = at(x + dx, y + dy);
        sum[0] += qRed(pixel);
        sum[1] += qGreen(pixel);
        sum[2] += qBlue(pixel);
      }
    }
    for (int& channel : sum) channel /= count;
    return sum;
  }

 private:
  QImage image_;
};

bool areClose(QRgb a, QRgb b, int tolerance) {
  return std::abs(qRed(a) - qRed(b)) <= tolerance && std::abs(qGreen(a) - qGreen(b)) <= tolerance &&
         std::abs(qBlue(a) - qBlue(b)) <= tolerance;
}

/// Cheap, and true of nearly every square of two pictures that are alike.
bool isNearlyTheSame(const Pixels& a, const Pixels& b, const QRect& area, int tolerance) {
  const QRect all = area.adjusted(-reach, -reach, reach, reach) & a.bounds();
  for (int y = all.top(); y <= all.bottom(); ++y) {
    for (int x = all.left(); x <= all.right(); ++x) {
      if (!areClose(a.at(x, y), b.at(x, y), tolerance)) return false;
    }
  }
  return true;
}

/// Whether `color` lies between colours that `pixels` has at that place or beside it.
bool isFoundNear(const Color& color, const Pixels& pixels, int x, int y,
                 const PictureTolerance& tolerance) {
  Color least = pixels.blurred(x, y);
  Color most = least;
  for (int dy = -1; dy <= 1; ++dy) {
    for (int dx = -1; dx <= 1; ++dx) {
      const Color near = pixels.blurred(x + dx, y + dy);
      for (std::size_t i = 0; i < near.size(); ++i) {
        least[i] = std::min(least[i], near[i]);
        most[i] = std::max(most[i], near[i]);
      }
    }
  }
  for (std::size_t i = 0; i < color.size(); ++i) {
    const double slack = tolerance.channel + tolerance.contrast * (most[i] - least[i]);
    if (color[i] < least[i] - slack || color[i] > most[i] + slack) return false;
  }
  return true;
}

bool blockDiffers(const Pixels& a, const Pixels& b, const QRect& block,
                  const PictureTolerance& tolerance) {
  if (isNearlyTheSame(a, b, block, tolerance.channel)) return false;
  int differing = 0;
  for (int y = block.top(); y <= block.bottom(); ++y) {
    for (int x = block.left(); x <= block.right(); ++x) {
      const bool same = isFoundNear(a.blurred(x, y), b, x, y, tolerance) &&
                        isFoundNear(b.blurred(x, y), a, x, y, tolerance);
      if (!same) ++differing;
    }
  }
  return differing > tolerance.blockShare * block.width() * block.height();
}

}  // namespace

PictureDifference comparePictures(const QImage& actual, const QImage& expected,
                                  const PictureTolerance& tolerance) {
  PictureDifference difference{actual.size(), expected.size(), {}};
  if (actual.size() != expected.size() || actual.isNull()) return difference;
  const Pixels a(actual);
  const Pixels b(expected);
  for (int y = 0; y < actual.height(); y += tolerance.block) {
    for (int x = 0; x < actual.width(); x += tolerance.block) {
      const QRect block = QRect(x, y, tolerance.block, tolerance.block) & a.bounds();
      if (blockDiffers(a, b, block, tolerance)) difference.blocks.push_back(block);
    }
  }
  return difference;
}

QImage differencePicture(const QImage& expected, const PictureDifference& difference) {
  constexpr int paleness = 150;
  QImage picture = expected.convertToFormat(QImage::Format_RGB32);
  picture.setDevicePixelRatio(1);
  QPainter painter(&picture);
  painter.fillRect(picture.rect(), QColor(255, 255, 255, paleness));
  painter.setPen(QColor(0xd0, 0, 0));
  for (const QRect& block : difference.blocks) painter.drawRect(block.adjusted(0, 0, -1, -1));
  return picture;
}

}  // namespace vantorel
