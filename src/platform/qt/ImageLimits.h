// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace vantorel {

/// In pixels, as an encoded image claims it; not to be trusted before `isAcceptable`.
struct EncodedSize {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  friend bool operator==(const EncodedSize&, const EncodedSize&) = default;
};

inline constexpr std::uint32_t maxImageSide = 32'768;
inline constexpr std::uint64_t maxImagePixels = 100'000'000;  // 400 MB once decoded

/// For formats but PNG and JPEG, which screens and cameras use: what else comes, from whomever, is
/// not worth the memory.
inline constexpr std::uint64_t maxUncommonPixels = 40'000'000;

/// Whether the program will ever hold an image of this size in memory.
[[nodiscard]] constexpr bool isAcceptable(EncodedSize size,
                                          std::uint64_t maxPixels = maxImagePixels) {
  return size.width > 0 && size.height > 0 && size.width <= maxImageSide &&
         size.height <= maxImageSide && std::uint64_t{size.width} * size.height <= maxPixels;
}

}  // namespace vantorel
