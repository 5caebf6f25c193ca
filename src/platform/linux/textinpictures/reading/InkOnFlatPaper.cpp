// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/linux/textinpictures/reading/ConnectedPixels.h"
#include "platform/linux/textinpictures/reading/InkOnPaper.h"

namespace vantorel {
namespace {

// Smaller areas of one colour are inner parts of letters, or nothing.
constexpr int smallestArea = 150;
// What is larger than any letter is paper, even when nothing is written on it.
constexpr int largestLetter = 120;
constexpr int lowestLetter = 5;
// The strokes of a letter fill less of the box around it than paper does, and enclose two holes at
// most; several letters that touch, as when underlined, enclose more but fill still less.
constexpr int maxHoles = 2;
constexpr double fullestLetter = 0.7;
constexpr double fullestWord = 0.5;
// No stroke covers as many pixels.
constexpr int largestStroke = 8000;
// A mark that differs less from its paper is noise.
constexpr int weakestInk = 24;
constexpr int faintest = 6;
constexpr double leastPaper = 0.4;

/// Which areas are paper. The inside of a thick letter is an area of one colour too; what tells
/// paper from it is that something is written on it, and its plain shape.
class Paper {
 public:
  explicit Paper(const ColourPicture& picture)
      : picture_(picture), areas_(flatAreas(picture)), isPaper_(areas_.groups.size()) {
    for (std::size_t i = 0; i < areas_.groups.size(); ++i) {
      const PixelGroup& area = areas_.groups[i];
      isPaper_[i] = area.box.width() > largestLetter && area.box.height() > largestLetter &&
                    area.count >= smallestArea;
    }
    findWrittenOn();
  }

  [[nodiscard]] bool at(std::size_t pixel) const {
    return isPaper_[static_cast<std::size_t>(areas_.groupOf[pixel])];
  }

  [[nodiscard]] double share() const {
    double paper = 0;
    for (std::size_t i = 0; i < isPaper_.size(); ++i)
      if (isPaper_[i]) paper += areas_.groups[i].count;
    return paper / static_cast<double>(picture_.pixels.size());
  }

 private:
  [[nodiscard]] bool isArea(std::size_t pixel) const {
    return areas_.of(pixel).count >= smallestArea;
  }

  [[nodiscard]] static bool mayBePaper(const PixelGroup& area, int marksOnIt) {
    if (area.count > largestStroke) return true;
    const double box = static_cast<double>(area.box.width()) * area.box.height();
    return area.count >= box * (marksOnIt > maxHoles ? fullestWord : fullestLetter);
  }

  /// An area is written on when it surrounds marks of its own.
  void findWrittenOn() {
    constexpr int nothing = -1;
    constexpr int several = -2;
    const int width = picture_.width;
    const int height = picture_.height;
    const PixelGroups marks =
        touchingPixels(width, height, [this](std::size_t pixel) { return !isArea(pixel); });
    std::vector<int> around(marks.groups.size(), nothing);
    const auto row = static_cast<std::size_t>(width);
    std::size_t pixel = 0;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x, ++pixel) {
        if (marks.groupOf[pixel] == PixelGroups::none) continue;
        int& area = around[static_cast<std::size_t>(marks.groupOf[pixel])];
        const auto touch = [&](std::size_t neighbour) {
          if (marks.groupOf[neighbour] != PixelGroups::none) return;
          const int other = areas_.groupOf[neighbour];
          if (area == nothing) area = other;
          if (area != other) area = several;
        };
        if (x > 0) touch(pixel - 1);
        if (x + 1 < width) touch(pixel + 1);
        if (y > 0) touch(pixel - row);
        if (y + 1 < height) touch(pixel + row);
      }
    }
    std::vector<int> marksOn(areas_.groups.size(), 0);
    for (std::size_t i = 0; i < around.size(); ++i) {
      if (around[i] >= 0 && marks.groups[i].box.height() >= lowestLetter)
        ++marksOn[static_cast<std::size_t>(around[i])];
    }
    for (std::size_t i = 0; i < marksOn.size(); ++i)
      if (marksOn[i] > 0 && mayBePaper(areas_.groups[i], marksOn[i])) isPaper_[i] = true;
  }

  const ColourPicture& picture_;
  PixelGroups areas_;
  std::vector<bool> isPaper_;
};

/// For each pixel the colour of the nearest paper.
std::vector<std::uint32_t> paperColours(const ColourPicture& picture, const Paper& paper) {
  std::vector<std::uint32_t> colours = picture.pixels;
  const std::size_t count = colours.size();
  const auto row = static_cast<std::size_t>(picture.width);
  std::vector<bool> isKnown(count);
  std::vector<std::uint32_t> front;  // known pixels with neighbours that may be unknown
  for (std::size_t pixel = 0; pixel < count; ++pixel) isKnown[pixel] = paper.at(pixel);
  const auto forNeighbours = [&](std::size_t pixel, auto&& visit) {
    const std::size_t x = pixel % row;
    if (x > 0) visit(pixel - 1);
    if (x + 1 < row) visit(pixel + 1);
    if (pixel >= row) visit(pixel - row);
    if (pixel + row < count) visit(pixel + row);
  };
  for (std::size_t pixel = 0; pixel < count; ++pixel) {
    if (isKnown[pixel]) continue;
    forNeighbours(pixel, [&](std::size_t neighbour) {
      if (isKnown[neighbour]) front.push_back(static_cast<std::uint32_t>(neighbour));
    });
  }
  std::vector<std::uint32_t> next;
  while (!front.empty()) {
    next.clear();
    for (const std::uint32_t pixel : front) {
      forNeighbours(pixel, [&](std::size_t neighbour) {
        if (isKnown[neighbour]) return;
        isKnown[neighbour] = true;
        colours[neighbour] = colours[pixel];
        next.push_back(static_cast<std::uint32_t>(neighbour));
      });
    }
    front.swap(next);
  }
  return colours;
}

/// The strongest ink around each place, looked up by square tiles.
class InkAround {
 public:
  explicit InkAround(const Ink& ink)
      : columns_((ink.width + tile - 1) / tile), rows_((ink.height + tile - 1) / tile) {
    strongest_.resize(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_));
    std::size_t pixel = 0;
    for (int y = 0; y < ink.height; ++y) {
      for (int x = 0; x < ink.width; ++x, ++pixel) {
        std::uint8_t& most = strongest_[place(x / tile, y / tile)];
        most = std::max(most, ink.amounts[pixel]);
      }
    }
  }

  [[nodiscard]] int at(const PixelBox& box) const {
    int most = 0;
    for (int row = std::max(0, box.top / tile - 1);
         row <= std::min(rows_ - 1, box.bottom / tile + 1); ++row) {
      for (int column = std::max(0, box.left / tile - 1);
           column <= std::min(columns_ - 1, box.right / tile + 1); ++column)
        most = std::max<int>(most, strongest_[place(column, row)]);
    }
    return most;
  }

 private:
  static constexpr int tile = 16;  // compressed pictures have their noise in blocks of 8
  [[nodiscard]] std::size_t place(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(column);
  }
  int columns_;
  int rows_;
  std::vector<std::uint8_t> strongest_;
};

/// What compression leaves around letters: small, and weak beside them.
bool isSpeck(const PixelGroup& mark, int strength, const InkAround& around) {
  constexpr int shortSide = 4;
  constexpr int longSide = 9;
  const int low = std::min(mark.box.width(), mark.box.height());
  const int high = std::max(mark.box.width(), mark.box.height());
  return low <= shortSide && high <= longSide && strength * 5 < around.at(mark.box) * 2;
}

/// Brings every mark to full strength and takes away what is too weak to be one.
void strengthen(Ink& ink) {
  const PixelGroups marks = touchingPixels(
      ink.width, ink.height, [&](std::size_t pixel) { return ink.amounts[pixel] >= faintest; });
  std::vector<int> strongest(marks.groups.size(), 0);
  for (std::size_t pixel = 0; pixel < ink.amounts.size(); ++pixel) {
    if (marks.groupOf[pixel] == PixelGroups::none) continue;
    int& most = strongest[static_cast<std::size_t>(marks.groupOf[pixel])];
    most = std::max<int>(most, ink.amounts[pixel]);
  }
  const InkAround around(ink);
  for (std::size_t i = 0; i < strongest.size(); ++i)
    if (isSpeck(marks.groups[i], strongest[i], around)) strongest[i] = 0;
  for (std::size_t pixel = 0; pixel < ink.amounts.size(); ++pixel) {
    const int mark = marks.groupOf[pixel];
    const int most = mark == PixelGroups::none ? 0 : strongest[static_cast<std::size_t>(mark)];
    std::uint8_t& amount = ink.amounts[pixel];
    amount = most < weakestInk ? std::uint8_t{0} : static_cast<std::uint8_t>(amount * 255 / most);
  }
}

}  // namespace

std::optional<Ink> inkOnFlatPaper(const ColourPicture& picture) {
  if (picture.pixels.empty()) return std::nullopt;
  const Paper paper(picture);
  if (paper.share() < leastPaper) return std::nullopt;
  const auto colours = paperColours(picture, paper);
  Ink ink{picture.width, picture.height, {}};
  ink.amounts.resize(picture.pixels.size());
  for (std::size_t pixel = 0; pixel < colours.size(); ++pixel) {
    ink.amounts[pixel] =
        static_cast<std::uint8_t>(colourDistance(picture.pixels[pixel], colours[pixel]));
  }
  strengthen(ink);
  return ink;
}

Ink inkOf(const ColourPicture& picture) {
  auto ink = inkOnFlatPaper(picture);
  return ink ? std::move(*ink) : inkOnUnevenPaper(picture);
}

}  // namespace vantorel
