// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <string>
#include <vector>

#include "base/Bytes.h"
#include "pictures/LabelledTexts.h"

namespace vantorel {

/// A rendered picture and what stands in it. Needs the toolkit's application object.
struct LabelledPicture {
  std::string kind;   // "lines", "interface", "receipt"
  std::string theme;  // "light", "dark", ...
  std::string font;
  Language language = Language::english;
  int size = 0;  // of the type, in pixels
  QImage image;
  QString text;

  [[nodiscard]] Bytes png() const;
};

/// Twelve lines on one colour, in every font and theme.
[[nodiscard]] std::vector<LabelledPicture> linePictures(Language language, int size);
/// A window with a menu, a sidebar, a table with a selected row, buttons and a status bar.
[[nodiscard]] std::vector<LabelledPicture> interfacePictures(Language language, int size);
/// Till receipts, photographed: tilted, unevenly lit, with the sensor's noise, as JPEG leaves them.
[[nodiscard]] std::vector<LabelledPicture> receiptPictures(Language language);
/// Text on white: so many lines of a size on so large a picture.
[[nodiscard]] QImage pageOfText(QSize picture, int size, int lines);

[[nodiscard]] Bytes pngOf(const QImage& image);
[[nodiscard]] Bytes jpegOf(const QImage& image, int quality);

/// How many of the words of a text were found, in whatever order.
struct WordCount {
  int found = 0;
  int all = 0;
  WordCount& operator+=(const WordCount& other);
  [[nodiscard]] double percent() const;
};
[[nodiscard]] WordCount foundWords(const QString& expected, const QString& read);

}  // namespace vantorel
