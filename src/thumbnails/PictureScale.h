// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "platform/Bitmap.h"

namespace vantorel {

/// How many pixels a point to make pictures with that are shown in `place` at most, in points, on a
/// screen of `screenScale`: as sharp as the screen, or less when `pictures` of them, whatever their
/// shape, would take more than `byteLimit`; but no less than one.
[[nodiscard]] double pictureScale(double screenScale, Size place, std::size_t byteLimit,
                                  std::size_t pictures);

}  // namespace vantorel
