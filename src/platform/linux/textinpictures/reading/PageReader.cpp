// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/reading/PageReader.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/CaptureLimits.h"
#include "platform/linux/textinpictures/reading/InkOnPaper.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr int pixelsAtOnce = 3'000'000;
constexpr int fewestRowsAtOnce = 300;
constexpr int softEdge = 4;               // rows around letters
constexpr std::size_t maxText = 100'000;  // bytes, however many marks its characters carry

std::size_t codePointsIn(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

/// The height of the part of a band whose lines are whole. A line that touches the end of the band
/// goes on in the next; the next begins above it.
int wholeHeight(const std::vector<TextLine>& lines, int height) {
  int end = height;
  for (const TextLine& line : lines)
    if (line.box.bottom + softEdge >= height) end = std::min(end, line.box.top - softEdge);
  for (bool moved = true; moved;) {
    moved = false;
    for (const TextLine& line : lines) {
      if (line.box.top - softEdge >= end || line.box.bottom < end) continue;
      end = line.box.top - softEdge;
      moved = true;
    }
  }
  return end >= height / 2 ? end : height;
}

}  // namespace

struct PageReader::Page {
  std::vector<std::string> lines;
  std::string text;
  std::size_t codePoints = 0;
  bool isFull = false;
  bool wasTried = false;  // whether any line was read, with words or without
  bool failed = false;

  [[nodiscard]] bool isDone() const { return isFull || failed; }

  void add(std::string line) {
    text += line;
    text += '\n';
    codePoints += codePointsIn(line) + 1;
    lines.push_back(std::move(line));
    const bool mayBeFull = codePoints > longestRecognizedText;  // a character has at least one
    isFull = text.size() > maxText ||
             (mayBeFull && prefixOfCharacters(text, longestRecognizedText).size() < text.size());
  }
};

PageReader::PageReader(std::vector<std::unique_ptr<LineReader>> readers,
                       std::function<bool()> isTimeUp)
    : readers_(std::move(readers)), isTimeUp_(std::move(isTimeUp)) {}

std::optional<std::vector<std::string>> PageReader::read(PictureRows& picture) {
  Page page;
  int rows = 0;
  const int rowsAtOnce = std::max(fewestRowsAtOnce, pixelsAtOnce / picture.width());
  ColourPicture band{picture.width(), 0, {}};
  bool isLast = false;
  while (!isLast && !page.isDone() && !isTimeUp_()) {
    const int wanted = rowsAtOnce - band.height;
    const int got = picture.read(wanted, band.pixels);
    isLast = got < wanted;
    band.height += got;
    rows += got;
    if (band.height == 0) break;
    const Ink ink = inkOf(band);
    const TextLines lines = findTextLines(ink);
    const int used = isLast ? band.height : wholeHeight(lines.lines, band.height);
    readLines(ink, lines, used, page);
    band.pixels.erase(band.pixels.begin(), band.pixels.begin() + std::ptrdiff_t{used} * band.width);
    band.height -= used;
  }
  const bool isUntried = !page.wasTried && isTimeUp_();
  const bool isDamaged = isLast && rows < picture.height();
  if (page.failed || (page.lines.empty() && (isUntried || isDamaged))) return std::nullopt;
  return std::move(page.lines);
}

void PageReader::readLines(const Ink& ink, const TextLines& lines, int usedHeight, Page& page) {
  std::vector<std::string> row;
  const auto finishRow = [&] {
    // Cells of a Hebrew table follow each other from the right.
    const auto hebrew = std::count_if(row.begin(), row.end(), hasHebrew);
    if (hebrew * 2 > static_cast<std::ptrdiff_t>(row.size())) std::reverse(row.begin(), row.end());
    for (auto& text : row) page.add(std::move(text));
    row.clear();
  };
  int current = 0;
  for (const TextLine& line : lines.lines) {
    if (line.box.bottom >= usedHeight) continue;
    if (line.row != current) finishRow();
    current = line.row;
    if (page.isDone() || isTimeUp_()) break;
    auto text = readLine(linePicture(ink, lines, line));
    page.wasTried = true;
    page.failed = !text;
    if (text && !text->empty()) row.push_back(std::move(*text));
  }
  finishRow();
}

std::optional<std::string> PageReader::readLine(const GreyPicture& line) {
  std::vector<LineReading> readings;
  for (std::size_t i = 0; i < readers_.size(); ++i) {
    const std::size_t reader = (preferred_ + i) % readers_.size();
    auto reading = readers_[reader]->read(line);
    if (!reading) return std::nullopt;
    readings.push_back(std::move(*reading));
    if (!isSure(readings.back())) continue;
    preferred_ = reader;
    return lineText(readings.back().words);
  }
  return lineText(bestWords(readings));
}

}  // namespace vantorel
