// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <cstdint>
#include <vector>

#include "platform/Bitmap.h"

namespace vantorel {

/// The mean of the area that each pixel of the result stands for, weighted by alpha and multiplied
/// by it: the slow and plain way, to compare with.
[[nodiscard]] std::vector<std::uint32_t> averagedPixels(const QImage& image, PixelSize reduced);

/// The largest difference between two channels of two pictures of the same size; 256 when their
/// sizes differ.
[[nodiscard]] int farthestChannel(const std::vector<std::uint32_t>& one,
                                  const std::vector<std::uint32_t>& other);

}  // namespace vantorel
