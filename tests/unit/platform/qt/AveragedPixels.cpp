// SPDX-License-Identifier: MIT
#include "unit/platform/qt/AveragedPixels.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace vantorel {
namespace {

/// Where pixel `i` of `reduced` begins, in pixels of `whole`.
double edge(int i, int whole, int reduced) {
  return static_cast<double>(i) * static_cast<double>(whole) / static_cast<double>(reduced);
}

/// How much of the pixel that begins at `i` lies between two edges.
double overlap(int i, double begin, double end) {
  return std::max(0.0, std::min(end, i + 1.0) - std::max(begin, static_cast<double>(i)));
}

std::uint32_t mean(const QImage& image, double left, double top, double right, double bottom) {
  double alpha = 0;
  double red = 0;
  double green = 0;
  double blue = 0;
  for (int y = static_cast<int>(top); y < std::min<double>(bottom, image.height()); ++y) {
    for (int x = static_cast<int>(left); x < std::min<double>(right, image.width()); ++x) {
      const QRgb pixel = image.pixel(x, y);
      const double weight = overlap(x, left, right) * overlap(y, top, bottom);
      const double opaque = weight * qAlpha(pixel) / 255.0;
      alpha += weight * qAlpha(pixel);
      red += opaque * qRed(pixel);
      green += opaque * qGreen(pixel);
      blue += opaque * qBlue(pixel);
    }
  }
  const double area = (right - left) * (bottom - top);
  // What lies half way between two numbers must not fall to the lower by a rounding of the last
  // bit.
  const auto channel = [area](double sum) {
    return static_cast<std::uint32_t>(std::floor(sum / area + 0.5 + 1e-9));
  };
  return channel(alpha) << 24U | channel(red) << 16U | channel(green) << 8U | channel(blue);
}

}  // namespace

std::vector<std::uint32_t> averagedPixels(const QImage& image, PixelSize reduced) {
  std::vector<std::uint32_t> pixels;
  for (int y = 0; y < reduced.height; ++y) {
    for (int x = 0; x < reduced.width; ++x) {
      pixels.push_back(mean(
          image, edge(x, image.width(), reduced.width), edge(y, image.height(), reduced.height),
          edge(x + 1, image.width(), reduced.width), edge(y + 1, image.height(), reduced.height)));
    }
  }
  return pixels;
}

int farthestChannel(const std::vector<std::uint32_t>& one,
                    const std::vector<std::uint32_t>& other) {
  if (one.size() != other.size()) return 256;
  int farthest = 0;
  for (std::size_t i = 0; i < one.size(); ++i) {
    for (const unsigned shift : {0U, 8U, 16U, 24U}) {
      const auto a = static_cast<int>(one[i] >> shift & 0xFFU);
      const auto b = static_cast<int>(other[i] >> shift & 0xFFU);
      farthest = std::max(farthest, std::abs(a - b));
    }
  }
  return farthest;
}

}  // namespace vantorel
