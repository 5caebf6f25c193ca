// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <map>
#include <string>

#include "platform/Bitmap.h"

namespace vantorel {

/// A picture of one colour, encoded; `texts` go into it as PNG keeps them.
[[nodiscard]] std::string encodedPicture(int width, int height, QRgb colour,
                                         const char* format = "png",
                                         const std::map<std::string, std::string>& texts = {});

/// A drawing of one colour.
[[nodiscard]] std::string drawing(int width, int height, const std::string& colour);

/// The colour of the pixel in the middle; 0 for no picture.
[[nodiscard]] std::uint32_t middleOf(const SharedBitmap& picture);

/// "(none)" or "width x height".
[[nodiscard]] std::string sizeOf(const SharedBitmap& picture);

}  // namespace vantorel
