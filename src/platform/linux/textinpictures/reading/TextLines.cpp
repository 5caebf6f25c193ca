// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/reading/TextLines.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <utility>

#include "platform/linux/textinpictures/reading/ConnectedPixels.h"

namespace vantorel {
namespace {

// Measured on rendered interfaces and photographed receipts; lengths are in pixels.
constexpr int highestLetter = 240;
constexpr int lowestLine = 5;
constexpr int narrowestLine = 4;
constexpr std::size_t maxMarks = 15'000;  // of a picture of noise only the largest are looked at

/// Rules, frames and pictures, which are no letters.
bool isShape(const PixelGroup& mark) {
  const int width = mark.box.width();
  const int height = mark.box.height();
  const bool isLarge = height > highestLetter || width > 20 * height + 40;
  const bool isUpright = height > 24 && height > 12 * width;
  const bool isRule = width > 24 && height <= 2;
  const bool isFrame = width > 30 && height > 16 &&
                       static_cast<double>(mark.count) < 0.15 * width * static_cast<double>(height);
  return isLarge || isUpright || isRule || isFrame;
}

/// Letters beside each other, of about one size.
bool areLetters(const PixelBox& left, const PixelBox& right) {
  const int low = std::min(left.height(), right.height());
  const int high = std::max(left.height(), right.height());
  const int gap = right.left - left.right - 1;
  const int shared = std::min(left.bottom, right.bottom) - std::max(left.top, right.top) + 1;
  return gap <= high + 2 && low * 22 >= high * 10 && shared * 100 >= low * 45;
}

/// A dot, a comma, a quotation mark, a dash, a vowel sign beside a letter.
bool isMarkOf(const PixelBox& mark, const PixelBox& letter) {
  const int height = letter.height();
  if (mark.height() * 22 >= height * 10 || mark.height() * 16 < height) return false;
  const int gap = std::max(mark.left - letter.right, letter.left - mark.right) - 1;
  const int middle = (mark.top + mark.bottom) / 2;
  return gap * 2 <= height + 2 && mark.width() * 10 < height * 22 &&
         (letter.top - middle) * 10 < height * 4 && (middle - letter.bottom) * 4 < height;
}

/// Words of one line, further apart than their letters, as behind a comma; cells of a table are
/// further apart still.
bool areWords(const PixelBox& left, const PixelBox& right) {
  const int low = std::min(left.height(), right.height());
  const int high = std::max(left.height(), right.height());
  const int gap = right.left - left.right - 1;
  const int shared = std::min(left.bottom, right.bottom) - std::max(left.top, right.top) + 1;
  return gap >= 0 && gap <= high && low * 2 >= high && shared * 10 >= low * 7;
}

/// The marks that may be letters, from left to right.
std::vector<int> letters(const PixelGroups& marks) {
  std::vector<int> found;
  for (std::size_t i = 0; i < marks.groups.size(); ++i)
    if (!isShape(marks.groups[i])) found.push_back(static_cast<int>(i));
  const auto box = [&](int mark) { return marks.groups[static_cast<std::size_t>(mark)].box; };
  if (found.size() > maxMarks) {
    std::nth_element(found.begin(), found.begin() + maxMarks, found.end(),
                     [&](int a, int b) { return box(a).height() > box(b).height(); });
    found.resize(maxMarks);
  }
  std::sort(found.begin(), found.end(),
            [&](int a, int b) { return std::pair(box(a).left, a) < std::pair(box(b).left, b); });
  return found;
}

/// Calls `visit` with every two boxes that are not far apart; both are numbered from the left.
template <class Visit>
void forNeighbours(const std::vector<PixelBox>& boxes, Visit visit) {
  int reach = 0;
  for (const PixelBox& box : boxes) reach = std::max(reach, box.height() + 3);
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    // Boxes are sorted by where they begin: the first that begins too far away ends the search.
    for (std::size_t j = i + 1; j < boxes.size() && boxes[j].left - boxes[i].right <= reach; ++j)
      visit(i, j);
  }
}

PixelBox united(const PixelBox& a, const PixelBox& b) {
  if (a.right < a.left) return b;
  return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
          std::max(a.bottom, b.bottom)};
}

/// Makes one set of the sets of `boxes` that are words of one line.
void uniteWords(const std::vector<PixelBox>& boxes, DisjointSets& sets) {
  std::vector<PixelBox> wordOf(boxes.size());
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    const auto word = static_cast<std::size_t>(sets.root(static_cast<int>(i)));
    if (wordOf[word].width() <= 0) found.push_back(word);
    wordOf[word] = united(wordOf[word], boxes[i]);
  }
  // In the order of their first boxes, and so from the left.
  std::vector<PixelBox> words;
  words.reserve(found.size());
  for (const std::size_t word : found) words.push_back(wordOf[word]);
  forNeighbours(words, [&](std::size_t i, std::size_t j) {
    if (areWords(words[i], words[j]))
      sets.unite(static_cast<int>(found[i]), static_cast<int>(found[j]));
  });
}

/// For each of `letters` the number of its line.
std::vector<int> grouped(const PixelGroups& marks, const std::vector<int>& letters) {
  DisjointSets sets;
  std::vector<PixelBox> boxes;
  for (const int letter : letters) {
    (void)sets.add();
    boxes.push_back(marks.groups[static_cast<std::size_t>(letter)].box);
  }
  const auto unite = [&](std::size_t i, std::size_t j) {
    sets.unite(static_cast<int>(i), static_cast<int>(j));
  };
  forNeighbours(boxes, [&](std::size_t i, std::size_t j) {
    if (areLetters(boxes[i], boxes[j])) unite(i, j);
  });
  std::vector<int> sizes(boxes.size(), 0);
  std::vector<std::size_t> words(boxes.size());
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    words[i] = static_cast<std::size_t>(sets.root(static_cast<int>(i)));
    ++sizes[words[i]];
  }
  // What stands in a row with others of its size is a word, however large the thing beside it is.
  constexpr int maxMarksInARow = 3;
  const auto isAlone = [&](std::size_t i) { return sizes[words[i]] <= maxMarksInARow; };
  forNeighbours(boxes, [&](std::size_t i, std::size_t j) {
    if ((isAlone(i) && isMarkOf(boxes[i], boxes[j])) ||
        (isAlone(j) && isMarkOf(boxes[j], boxes[i])))
      unite(i, j);
  });
  uniteWords(boxes, sets);
  std::vector<int> lines(boxes.size());
  for (std::size_t i = 0; i < lines.size(); ++i) lines[i] = sets.root(static_cast<int>(i));
  return lines;
}

/// A line belongs to the row whose middle it covers.
void arrangeInRows(std::vector<TextLine>& lines) {
  std::sort(lines.begin(), lines.end(), [](const TextLine& a, const TextLine& b) {
    return std::pair(a.box.top + a.box.bottom, a.box.left) <
           std::pair(b.box.top + b.box.bottom, b.box.left);
  });
  int row = 0;
  int bottom = -1;
  for (TextLine& line : lines) {
    const int middle = (line.box.top + line.box.bottom) / 2;
    if (bottom >= 0 && middle > bottom) ++row;
    if (bottom < 0 || middle > bottom) bottom = line.box.bottom;
    line.row = row;
  }
  std::stable_sort(lines.begin(), lines.end(), [](const TextLine& a, const TextLine& b) {
    return std::pair(a.row, a.box.left) < std::pair(b.row, b.box.left);
  });
}

/// The lines that are more than a speck, with the height that their letters have mostly.
std::vector<TextLine> measuredLines(const PixelGroups& marks, const std::vector<int>& letters,
                                    const std::vector<int>& lineOf) {
  std::vector<TextLine> lines(letters.size());
  std::vector<std::vector<int>> heights(letters.size());
  for (std::size_t i = 0; i < letters.size(); ++i) {
    const auto line = static_cast<std::size_t>(lineOf[i]);
    const PixelBox& box = marks.groups[static_cast<std::size_t>(letters[i])].box;
    lines[line].id = lineOf[i];
    lines[line].box = united(lines[line].box, box);
    heights[line].push_back(box.height());
  }
  lines.erase(std::remove_if(lines.begin(), lines.end(),
                             [](const TextLine& line) {
                               return line.box.height() < lowestLine ||
                                      line.box.width() < narrowestLine;
                             }),
              lines.end());
  for (TextLine& line : lines) {
    auto& all = heights[static_cast<std::size_t>(line.id)];
    // Dots, commas and specks say nothing about the letters.
    const auto isHigh = [&](int height) { return height * 5 >= line.box.height() * 2; };
    const auto end = std::partition(all.begin(), all.end(), isHigh);
    const auto typical = all.begin() + (end - all.begin()) * 6 / 10;
    std::nth_element(all.begin(), typical, end == all.begin() ? all.end() : end);
    line.letterHeight = *typical;
  }
  return lines;
}

/// For each mark the line that it is part of.
std::vector<int> ownersOfMarks(const PixelGroups& marks, const std::vector<int>& letters,
                               const std::vector<int>& lineOf, const std::vector<TextLine>& lines) {
  std::vector<bool> isLine(letters.size());
  for (const TextLine& line : lines) isLine[static_cast<std::size_t>(line.id)] = true;
  std::vector<int> owners(marks.groups.size(), TextLines::nobody);
  for (std::size_t i = 0; i < marks.groups.size(); ++i)
    if (isShape(marks.groups[i])) owners[i] = TextLines::shape;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    if (isLine[static_cast<std::size_t>(lineOf[i])])
      owners[static_cast<std::size_t>(letters[i])] = lineOf[i];
  }
  return owners;
}

}  // namespace

TextLines findTextLines(const Ink& ink) {
  PixelGroups marks = touchingPixels(
      ink.width, ink.height, [&](std::size_t pixel) { return ink.amounts[pixel] >= inkThreshold; });
  const std::vector<int> all = letters(marks);
  const std::vector<int> lineOf = grouped(marks, all);
  TextLines result;
  result.lines = measuredLines(marks, all, lineOf);
  const auto owners = ownersOfMarks(marks, all, lineOf, result.lines);
  result.owners = std::move(marks.groupOf);
  for (int& owner : result.owners) {
    owner =
        owner == PixelGroups::none ? TextLines::nobody : owners[static_cast<std::size_t>(owner)];
  }
  arrangeInRows(result.lines);
  return result;
}

}  // namespace vantorel
