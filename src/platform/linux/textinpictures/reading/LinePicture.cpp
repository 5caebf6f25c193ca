// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "platform/linux/textinpictures/reading/TextLines.h"

namespace vantorel {
namespace {

// The height at which letters are read best, measured; the engine reduces them from there.
constexpr double bestLetterHeight = 27;
constexpr double maxEnlarged = 5;
constexpr double maxReduced = 0.1;
constexpr double widestPicture = 12'000;
constexpr double highestPicture = 480;
constexpr double white = 255;
// The engine's time grows with a picture's width. Running text that was drawn large enough is read
// as well when it is narrower; small type and single words are not.
constexpr double narrower = 0.8;
constexpr int leastNarrowedLetter = 11;
constexpr int leastLettersInLine = 25;

/// A cubic through the pixels (Catmull and Rom), which keeps thin strokes crisp.
float cubic(float distance) {
  const float x = std::fabs(distance);
  if (x < 1) return (1.5F * x - 2.5F) * x * x + 1;
  if (x < 2) return ((-0.5F * x + 2.5F) * x - 4) * x + 2;
  return 0;
}

/// How each pixel along one side comes from pixels before scaling.
class Resampling {
 public:
  Resampling(int from, int to) {
    const float scale = static_cast<float>(to) / static_cast<float>(from);
    const float spread = scale < 1 ? 1 / scale : 1;
    taps_ = static_cast<int>(std::ceil(2 * spread)) * 2;
    for (int i = 0; i < to; ++i) {
      const float centre = (static_cast<float>(i) + 0.5F) / scale - 0.5F;
      const int first = static_cast<int>(std::floor(centre)) - taps_ / 2 + 1;
      float sum = 0;
      const std::size_t begin = weights_.size();
      for (int k = first; k < first + taps_; ++k) {
        weights_.push_back(cubic((centre - static_cast<float>(k)) / spread));
        positions_.push_back(std::clamp(k, 0, from - 1));
        sum += weights_.back();
      }
      for (std::size_t k = begin; k < weights_.size(); ++k) weights_[k] /= sum;
    }
  }

  /// The value at `place`; `at` answers those before scaling.
  template <class Source>
  [[nodiscard]] float value(int place, Source at) const {
    float sum = 0;
    const auto begin = static_cast<std::size_t>(place) * static_cast<std::size_t>(taps_);
    for (std::size_t k = begin; k < begin + static_cast<std::size_t>(taps_); ++k)
      sum += weights_[k] * at(positions_[k]);
    return sum;
  }

 private:
  int taps_;
  std::vector<float> weights_;
  std::vector<int> positions_;
};

struct Strip {
  int width;
  int height;
  std::vector<float> values;
};

/// The line on white, with a margin. What belongs to another line is left out.
Strip cutOut(const Ink& ink, const TextLines& lines, const TextLine& line) {
  const int margin = line.letterHeight * 8 / 10 + 2;
  const PixelBox& box = line.box;
  Strip strip{box.width() + 2 * margin, box.height() + 2 * margin, {}};
  strip.values.assign(
      static_cast<std::size_t>(strip.width) * static_cast<std::size_t>(strip.height), white);
  constexpr int fringe = 2;  // the soft edge of letters
  for (int y = std::max(0, box.top - fringe); y <= std::min(ink.height - 1, box.bottom + fringe);
       ++y) {
    for (int x = std::max(0, box.left - fringe); x <= std::min(ink.width - 1, box.right + fringe);
         ++x) {
      const auto pixel = static_cast<std::size_t>(y) * static_cast<std::size_t>(ink.width) +
                         static_cast<std::size_t>(x);
      const int owner = lines.owners[pixel];
      if (owner != TextLines::nobody && owner != line.id) continue;
      const auto place =
          static_cast<std::size_t>(y - box.top + margin) * static_cast<std::size_t>(strip.width) +
          static_cast<std::size_t>(x - box.left + margin);
      strip.values[place] = static_cast<float>(white - ink.amounts[pixel]);
    }
  }
  return strip;
}

}  // namespace

GreyPicture linePicture(const Ink& ink, const TextLines& lines, const TextLine& line) {
  const Strip strip = cutOut(ink, lines, line);
  const double scale =
      std::clamp(std::min({bestLetterHeight / std::max(line.letterHeight, 1),
                           widestPicture / strip.width, highestPicture / strip.height}),
                 maxReduced, maxEnlarged);
  const bool isRunningText = line.letterHeight >= leastNarrowedLetter &&
                             line.box.width() >= leastLettersInLine * line.letterHeight;
  const double across = isRunningText ? scale * narrower : scale;
  GreyPicture picture{std::max(1, static_cast<int>(strip.width * across)),
                      std::max(1, static_cast<int>(strip.height * scale)),
                      {}};
  const Resampling columns(strip.width, picture.width);
  const Resampling rows(strip.height, picture.height);
  const auto width = static_cast<std::size_t>(picture.width);
  std::vector<float> scaled(width * static_cast<std::size_t>(strip.height));
  for (int y = 0; y < strip.height; ++y) {
    const float* row =
        &strip.values[static_cast<std::size_t>(y) * static_cast<std::size_t>(strip.width)];
    for (int x = 0; x < picture.width; ++x) {
      scaled[static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)] =
          columns.value(x, [row](int position) { return row[position]; });
    }
  }
  picture.pixels.reserve(width * static_cast<std::size_t>(picture.height));
  for (int y = 0; y < picture.height; ++y) {
    for (std::size_t x = 0; x < width; ++x) {
      const float value = rows.value(
          y, [&](int position) { return scaled[static_cast<std::size_t>(position) * width + x]; });
      picture.pixels.push_back(
          static_cast<std::uint8_t>(std::clamp(value + 0.5F, 0.0F, static_cast<float>(white))));
    }
  }
  return picture;
}

}  // namespace vantorel
