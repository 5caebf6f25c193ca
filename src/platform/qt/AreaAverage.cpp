// SPDX-License-Identifier: MIT
#include "platform/qt/AreaAverage.h"

#include <algorithm>
#include <array>

namespace vantorel {
namespace {

constexpr std::uint32_t opaque = 255;

std::size_t count(int side) { return static_cast<std::size_t>(side); }

/// The side that goes with `fittingSide` where `side` goes with `otherSide`.
int proportional(int side, int fittingSide, int otherSide) {
  const auto exact = std::int64_t{side} * fittingSide;
  return std::max(1, static_cast<int>((exact + otherSide / 2) / otherSide));
}

}  // namespace

PixelSize reducedSize(PixelSize whole, PixelSize fitting) {
  fitting = {std::max(fitting.width, 1), std::max(fitting.height, 1)};
  if (whole.width <= fitting.width && whole.height <= fitting.height) return whole;
  const bool isWider =
      std::int64_t{whole.width} * fitting.height >= std::int64_t{whole.height} * fitting.width;
  if (isWider) return {fitting.width, proportional(whole.height, fitting.width, whole.width)};
  return {proportional(whole.width, fitting.height, whole.height), fitting.height};
}

AreaAverage::AreaAverage(PixelSize whole, PixelSize reduced, PixelBytes pixelBytes)
    : whole_(whole),
      reduced_(reduced),
      pixelBytes_(pixelBytes),
      divisor_(std::uint64_t{count(whole.width)} * count(whole.height)),
      columns_(count(whole.width) * static_cast<std::size_t>(pixelBytes)) {
  if (pixelBytes == PixelBytes::redGreenBlueAlpha) divisor_ *= opaque;
  pixels_.reserve(count(reduced.width) * count(reduced.height));
}

void AreaAverage::addRow(const std::uint8_t* row) {
  const auto full = static_cast<std::uint32_t>(whole_.height);
  auto remaining = static_cast<std::uint32_t>(reduced_.height);
  while (remaining > 0) {
    const std::uint32_t weight = std::min(remaining, full - filled_);
    accumulate(row, weight);
    remaining -= weight;
    filled_ += weight;
    if (filled_ == full) finishRow();
  }
}

void AreaAverage::accumulate(const std::uint8_t* row, std::uint32_t weight) {
  // Sixteen bits times sixteen bits is what processors multiply many of at once.
  const auto factor = static_cast<std::uint16_t>(weight);
  std::uint32_t* const sums = columns_.data();
  if (pixelBytes_ == PixelBytes::redGreenBlue) {
    const std::size_t size = columns_.size();
    for (std::size_t i = 0; i < size; ++i) {
      sums[i] += static_cast<std::uint32_t>(std::uint16_t{row[i]}) * factor;
    }
    return;
  }
  const auto width = count(whole_.width);
  for (std::size_t x = 0; x < width; ++x) {
    const std::uint8_t* const pixel = row + 4 * x;
    const std::uint32_t weighted = pixel[3] * std::uint32_t{factor};
    sums[4 * x] += pixel[0] * weighted;
    sums[4 * x + 1] += pixel[1] * weighted;
    sums[4 * x + 2] += pixel[2] * weighted;
    sums[4 * x + 3] += opaque * weighted;
  }
}

void AreaAverage::finishRow() {
  const auto full = static_cast<std::uint64_t>(whole_.width);
  const auto perPixel = static_cast<std::uint64_t>(reduced_.width);
  const auto channels = static_cast<std::size_t>(pixelBytes_);
  const auto mean = [this](std::uint64_t sum) {
    return static_cast<std::uint32_t>((sum + divisor_ / 2) / divisor_);
  };
  std::size_t x = 0;
  std::uint64_t remaining = perPixel;  // of the column at x
  for (int reducedX = 0; reducedX < reduced_.width; ++reducedX) {
    std::array<std::uint64_t, 4> sums{};
    for (std::uint64_t filled = 0; filled < full;) {
      const std::uint64_t weight = std::min(remaining, full - filled);
      for (std::size_t i = 0; i < channels; ++i) sums[i] += columns_[x * channels + i] * weight;
      filled += weight;
      remaining -= weight;
      if (remaining > 0) continue;
      remaining = perPixel;
      ++x;
    }
    const std::uint32_t alpha = channels == 4 ? mean(sums[3]) : opaque;
    pixels_.push_back(alpha << 24U | mean(sums[0]) << 16U | mean(sums[1]) << 8U | mean(sums[2]));
  }
  std::fill(columns_.begin(), columns_.end(), 0);
  filled_ = 0;
}

}  // namespace vantorel
