// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/textinpictures/reading/LineReading.h"
#include "platform/linux/textinpictures/reading/PictureRows.h"
#include "platform/linux/textinpictures/reading/TextLines.h"

namespace vantorel {

/// Reads the picture of a single line.
class LineReader {
 public:
  virtual ~LineReader() = default;
  /// No words when there are none; absent when the reader itself fails.
  [[nodiscard]] virtual std::optional<LineReading> read(const GreyPicture& line) = 0;
};

/// Reads whole pictures with the readers of one or several scripts. It goes through a picture in
/// bands, so that memory does not grow with its height. One thread.
class PageReader {
 public:
  /// `isTimeUp` is asked before every line; what was read until then is the result.
  PageReader(std::vector<std::unique_ptr<LineReader>> readers, std::function<bool()> isTimeUp);

  /// The lines in reading order, those without a word left out. Nothing more is read once there is
  /// more text than a history keeps. Absent when nothing can be said of the picture: there is no
  /// text in the sound part of a damaged one, a reader failed, or time was up before any line was
  /// read.
  [[nodiscard]] std::optional<std::vector<std::string>> read(PictureRows& picture);

 private:
  struct Page;
  void readLines(const Ink& ink, const TextLines& lines, int usedHeight, Page& page);
  /// Absent when a reader fails.
  [[nodiscard]] std::optional<std::string> readLine(const GreyPicture& line);

  std::vector<std::unique_ptr<LineReader>> readers_;
  std::function<bool()> isTimeUp_;
  std::size_t preferred_ = 0;  // who read the last line, and will likely read the next
};

}  // namespace vantorel
