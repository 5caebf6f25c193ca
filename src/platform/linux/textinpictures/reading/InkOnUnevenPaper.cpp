// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "platform/linux/textinpictures/reading/InkOnPaper.h"

namespace vantorel {
namespace {

using Histogram = std::array<std::uint32_t, 256>;

constexpr int full = 255;

std::vector<std::uint8_t> luminance(const ColourPicture& picture) {
  std::vector<std::uint8_t> grey(picture.pixels.size());
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < grey.size(); ++i) {
    const std::uint32_t colour = picture.pixels[i];
    grey[i] = static_cast<std::uint8_t>(
        ((colour >> 16U & 0xFFU) * 77 + (colour >> 8U & 0xFFU) * 150 + (colour & 0xFFU) * 29) >>
        8U);
    sum += grey[i];
  }
  constexpr std::uint64_t darkPicture = 90;
  if (sum < darkPicture * grey.size())
    for (auto& value : grey) value = static_cast<std::uint8_t>(full - value);
  return grey;
}

/// How light the paper is, at the centres of square tiles.
class PaperLight {
 public:
  PaperLight(const std::vector<std::uint8_t>& grey, int width, int height)
      : tile_(std::max(16, std::min(width, height) / 24)),
        columns_((width + tile_ - 1) / tile_),
        rows_((height + tile_ - 1) / tile_) {
    for (int row = 0; row < rows_; ++row)
      for (int column = 0; column < columns_; ++column)
        lights_.push_back(lightOf(grey, width, height, column, row));
  }

  [[nodiscard]] float at(int x, int y) const {
    const auto [left, right, across] = between(x, columns_);
    const auto [above, below, down] = between(y, rows_);
    const float top = light(left, above) * (1 - across) + light(right, above) * across;
    const float bottom = light(left, below) * (1 - across) + light(right, below) * across;
    return std::max(top * (1 - down) + bottom * down, darkest);
  }

 private:
  static constexpr float darkest = 20;

  struct Between {
    int first, second;
    float share;
  };
  [[nodiscard]] Between between(int position, int count) const {
    const float place =
        std::clamp((static_cast<float>(position) + 0.5F) / static_cast<float>(tile_) - 0.5F, 0.0F,
                   static_cast<float>(count - 1));
    const int first = static_cast<int>(place);
    return {first, std::min(first + 1, count - 1), place - static_cast<float>(first)};
  }
  [[nodiscard]] float light(int column, int row) const {
    return lights_[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
                   static_cast<std::size_t>(column)];
  }
  /// The value that three tenths of the pixels around the tile exceed: writing covers less than
  /// the rest.
  [[nodiscard]] float lightOf(const std::vector<std::uint8_t>& grey, int width, int height,
                              int column, int row) const {
    Histogram histogram{};
    std::uint32_t count = 0;
    const int half = tile_ / 2;
    for (int y = std::max(0, row * tile_ - half); y < std::min(height, (row + 1) * tile_ + half);
         ++y) {
      for (int x = std::max(0, column * tile_ - half);
           x < std::min(width, (column + 1) * tile_ + half); ++x, ++count)
        ++histogram[grey[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                         static_cast<std::size_t>(x)]];
    }
    std::uint32_t above = 0;
    std::size_t value = histogram.size();
    while (value > 1 && above * 10 <= count * 3) above += histogram[--value];
    return static_cast<float>(value);
  }

  int tile_;
  int columns_;
  int rows_;
  std::vector<float> lights_;
};

struct Split {
  int threshold = 0;  // above it is ink
  double ink = full;  // the mean amount of what is above
};

/// The threshold that separates the two kinds of pixels best (Otsu).
Split split(const Histogram& histogram) {
  double count = 0;
  double sum = 0;
  for (std::size_t i = 0; i < histogram.size(); ++i) {
    count += histogram[i];
    sum += static_cast<double>(i) * histogram[i];
  }
  Split best;
  double bestSpread = -1;
  double below = 0;
  double sumBelow = 0;
  for (std::size_t i = 0; i + 1 < histogram.size(); ++i) {
    below += histogram[i];
    sumBelow += static_cast<double>(i) * histogram[i];
    const double above = count - below;
    if (below <= 0 || above <= 0) continue;
    const double difference = sumBelow / below - (sum - sumBelow) / above;
    const double spread = below * above * difference * difference;
    if (spread <= bestSpread) continue;
    bestSpread = spread;
    best = {static_cast<int>(i), (sum - sumBelow) / above};
  }
  constexpr int noise = 24;
  best.threshold = std::max(best.threshold, noise);
  return best;
}

/// Puts the threshold where every ink has it, and the mean of the ink at full strength.
std::array<std::uint8_t, 256> normalized(const Split& split) {
  std::array<std::uint8_t, 256> amounts{};
  for (int i = 0; i <= full; ++i) {
    const double amount = i <= split.threshold
                              ? static_cast<double>(i) * inkThreshold / split.threshold
                              : inkThreshold + (i - split.threshold) * (full - inkThreshold) /
                                                   std::max(1.0, split.ink - split.threshold);
    amounts[static_cast<std::size_t>(i)] =
        static_cast<std::uint8_t>(std::clamp(amount, 0.0, static_cast<double>(full)));
  }
  return amounts;
}

}  // namespace

Ink inkOnUnevenPaper(const ColourPicture& picture) {
  Ink ink{picture.width, picture.height, {}};
  if (picture.pixels.empty()) return ink;
  const auto grey = luminance(picture);
  const PaperLight paper(grey, picture.width, picture.height);
  ink.amounts.resize(grey.size());
  Histogram histogram{};
  std::size_t pixel = 0;
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x, ++pixel) {
      const float light = paper.at(x, y);
      const float darker = (light - static_cast<float>(grey[pixel])) * full / light;
      ink.amounts[pixel] = static_cast<std::uint8_t>(std::clamp(darker, 0.0F, 255.0F));
      ++histogram[ink.amounts[pixel]];
    }
  }
  const auto amounts = normalized(split(histogram));
  for (auto& amount : ink.amounts) amount = amounts[amount];
  return ink;
}

}  // namespace vantorel
