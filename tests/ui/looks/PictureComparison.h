// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <vector>

namespace vantorel {

/// What two pictures of the same look may differ in: how edges are smoothed, a pixel at most.
struct PictureTolerance {
  int channel = 6;           // of 255, in one of red, green and blue
  double contrast = 0.25;    // of what the neighbourhood has, on top of that
  int block = 16;            // pixels; pictures are judged square by square
  double blockShare = 0.05;  // of a square's pixels that may differ
};

struct PictureDifference {
  QSize actualSize;
  QSize expectedSize;
  std::vector<QRect> blocks;  // those that differ
  [[nodiscard]] bool none() const { return actualSize == expectedSize && blocks.empty(); }
};

/// Compares what two pictures show. Pixels count as the same where each picture, a little blurred,
/// has in the other one's neighbourhood what it would take to get there; so smoothing differs
/// freely, and nothing moves by more than a pixel. Sizes have to be the same. Both are opaque.
[[nodiscard]] PictureDifference comparePictures(const QImage& actual, const QImage& expected,
                                                const PictureTolerance& tolerance = {});

/// The pale `expected` with what differs framed, for looking at.
[[nodiscard]] QImage differencePicture(const QImage& expected, const PictureDifference& difference);

}  // namespace vantorel
