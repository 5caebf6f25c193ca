// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/linux/textinpictures/reading/Pixels.h"

namespace vantorel {

/// What looks like letters in a row.
struct TextLine {
  PixelBox box;
  int letterHeight = 0;
  /// Lines that stand beside each other, such as the cells of a table, share it.
  int row = 0;
  int id = 0;
};

struct TextLines {
  static constexpr int nobody = -1;
  static constexpr int shape = -2;
  /// From the top, and from the left within a row.
  std::vector<TextLine> lines;
  /// For each pixel the line it is a letter's part of; `shape` is a rule, a frame or a picture.
  std::vector<int> owners;
};

/// Finds lines of writing in any place, of any size up to a headline's, level or slightly tilted.
[[nodiscard]] TextLines findTextLines(const Ink& ink);

/// One line alone, without what stands around it, in the size that an engine reads best.
[[nodiscard]] GreyPicture linePicture(const Ink& ink, const TextLines& lines, const TextLine& line);

}  // namespace vantorel
