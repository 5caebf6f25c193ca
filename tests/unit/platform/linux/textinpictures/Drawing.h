// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "platform/linux/textinpictures/reading/Pixels.h"

namespace vantorel {

inline ColourPicture plain(int width, int height, std::uint32_t colour) {
  return {width, height,
          std::vector<std::uint32_t>(
              static_cast<std::size_t>(width) * static_cast<std::size_t>(height), colour)};
}

inline void fill(ColourPicture& picture, const PixelBox& box, std::uint32_t colour) {
  for (int y = box.top; y <= box.bottom; ++y)
    for (int x = box.left; x <= box.right; ++x)
      picture.pixels[static_cast<std::size_t>(y * picture.width + x)] = colour;
}

/// Something like the letter H, `height` high and nearly as wide.
inline void drawLetter(ColourPicture& picture, int left, int top, int height,
                       std::uint32_t colour) {
  const int stroke = height / 5;
  const int right = left + height - 2;
  const int bottom = top + height - 1;
  fill(picture, {left, top, left + stroke - 1, bottom}, colour);
  fill(picture, {right - stroke + 1, top, right, bottom}, colour);
  fill(picture, {left, top + height / 2, right, top + height / 2 + stroke - 1}, colour);
}

/// A row of such letters.
inline void drawWord(ColourPicture& picture, int left, int top, int height, int letters,
                     std::uint32_t colour) {
  for (int i = 0; i < letters; ++i)
    drawLetter(picture, left + i * (height + 2), top, height, colour);
}

inline int amountAt(const Ink& ink, int x, int y) {
  return ink.amounts[static_cast<std::size_t>(y * ink.width + x)];
}

}  // namespace vantorel
