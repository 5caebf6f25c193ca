#include "platform/linux/tesseract/reading/PageReader.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/linux/tesseract/reading/InkOnPaper.h"

namespace vantorel {
namespace {

constexpr int pixelsAtOnce = 3'000'000;
constexpr int fewestRowsAtOnce = 300;
constexpr int softEdge = 4;  // rows around letters
// Bytes, of which a character takes one to four: far more than 8,000 characters.
constexpr std::size_t mostText = 40'000;
constexpr std::size_t mostLetters = 9'000;

std::size_t lettersIn(const std::string& text) {
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
  std::size_t letters = 0;
  std::size_t bytes = 0;
  bool isFull = false;

  void add(std::string line) {
    letters += lettersIn(line) + 1;
    bytes += line.size() + 1;
    lines.push_back(std::move(line));
    isFull = letters > mostLetters || bytes > mostText;
  }
};

PageReader::PageReader(std::vector<std::unique_ptr<LineReader>> readers,
                       std::function<bool()> isTimeUp)
    : readers_(std::move(readers)), isTimeUp_(std::move(isTimeUp)) {}

std::vector<std::string> PageReader::read(PictureRows& picture) {
  Page page;
  const int rowsAtOnce = std::max(fewestRowsAtOnce, pixelsAtOnce / picture.width());
  ColourPicture band{picture.width(), 0, {}};
  for (bool isLast = false; !isLast && !page.isFull && !isTimeUp_();) {
    const int wanted = rowsAtOnce - band.height;
    const int got = picture.read(wanted, band.pixels);
    isLast = got < wanted;
    band.height += got;
    if (band.height == 0) break;
    const Ink ink = inkOf(band);
    const TextLines lines = findTextLines(ink);
    const int used = isLast ? band.height : wholeHeight(lines.lines, band.height);
    readLines(ink, lines, used, page);
    band.pixels.erase(band.pixels.begin(), band.pixels.begin() + std::ptrdiff_t{used} * band.width);
    band.height -= used;
  }
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
    if (page.isFull || isTimeUp_()) break;
    if (auto text = readLine(linePicture(ink, lines, line)); !text.empty())
      row.push_back(std::move(text));
  }
  finishRow();
}

std::string PageReader::readLine(const GreyPicture& line) {
  std::vector<LineReading> readings;
  for (std::size_t i = 0; i < readers_.size(); ++i) {
    const std::size_t reader = (preferred_ + i) % readers_.size();
    readings.push_back(readers_[reader]->read(line));
    if (!isSure(readings.back())) continue;
    preferred_ = reader;
    return lineText(readings.back().words);
  }
  return lineText(bestWords(readings));
}

}  // namespace vantorel
