// SPDX-License-Identifier: MIT
#include "program/Paintings.h"

#include <cstdlib>

namespace vantorel::bench {

namespace {

constexpr int visibleShade = 24;

bool differs(std::uint32_t one, std::uint32_t other) {
  for (int shift = 0; shift < 24; shift += 8) {
    const int left = static_cast<int>((one >> shift) & 0xffU);
    const int right = static_cast<int>((other >> shift) & 0xffU);
    if (std::abs(left - right) > visibleShade) return true;
  }
  return false;
}

}  // namespace

bool Paintings::isSame(const Pixels& one, const Pixels& other) const {
  if (one.size() != other.size() || one.empty()) return false;
  std::size_t different = 0;
  for (std::size_t i = 0; i < one.size(); ++i) different += differs(one[i], other[i]) ? 1 : 0;
  return different <= tolerated_;
}

std::optional<Clock::time_point> Paintings::firstLike(const Pixels& pixels) const {
  for (const auto& painting : all_) {
    if (isSame(painting.pixels, pixels)) return painting.moment;
  }
  return std::nullopt;
}

}  // namespace vantorel::bench
