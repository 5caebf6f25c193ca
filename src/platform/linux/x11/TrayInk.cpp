// SPDX-License-Identifier: MIT
#include "platform/linux/x11/TrayInk.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vantorel {

namespace {

constexpr std::uint32_t darkInk = 0x1f1f1f;
constexpr std::uint32_t lightInk = 0xf2f2f2;

double linear(std::uint32_t channel) {
  const double value = channel / 255.0;
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(std::uint32_t colour) {
  return 0.2126 * linear(colour >> 16U & 0xffU) + 0.7152 * linear(colour >> 8U & 0xffU) +
         0.0722 * linear(colour & 0xffU);
}

double contrast(std::uint32_t one, std::uint32_t other) {
  const double first = luminance(one) + 0.05;
  const double second = luminance(other) + 0.05;
  return first > second ? first / second : second / first;
}

}  // namespace

std::uint32_t inkOn(std::uint32_t background) {
  return contrast(darkInk, background) > contrast(lightInk, background) ? darkInk : lightInk;
}

std::optional<std::uint32_t> backgroundOf(std::span<const std::uint32_t> pixels) {
  std::array<std::uint64_t, 4> sums{};  // blue, green, red, alpha
  for (const std::uint32_t pixel : pixels) {
    for (unsigned i = 0; i < sums.size(); ++i) sums.at(i) += pixel >> 8 * i & 0xffU;
  }
  const auto alpha = sums[3];
  if (alpha == 0 || alpha * 2 < pixels.size() * std::uint64_t{255}) return std::nullopt;
  const auto channel = [&](std::uint64_t sum) {
    return static_cast<std::uint32_t>(std::min(sum * 255 / alpha, std::uint64_t{255}));
  };
  return channel(sums[2]) << 16U | channel(sums[1]) << 8U | channel(sums[0]);
}

std::vector<std::uint32_t> inked(const Bitmap& shape, std::uint32_t ink) {
  std::vector<std::uint32_t> pixels;
  pixels.reserve(shape.pixels.size());
  for (const std::uint32_t pixel : shape.pixels) {
    const std::uint32_t alpha = pixel >> 24U;
    const auto channel = [&](unsigned shift) {
      return ((ink >> shift & 0xffU) * alpha + 127) / 255 << shift;
    };
    pixels.push_back(alpha << 24U | channel(16) | channel(8) | channel(0));
  }
  return pixels;
}

}  // namespace vantorel
