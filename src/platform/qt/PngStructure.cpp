// SPDX-License-Identifier: MIT
#include "platform/qt/PngStructure.h"

#include <array>
#include <string_view>

#include "platform/qt/PngChunk.h"

namespace vantorel {
namespace {

struct Header {
  EncodedSize size;
  unsigned bitsPerPixel = 0;
  bool needsPalette = false;
};

unsigned channelsOf(unsigned colourType) {
  switch (colourType) {
    case 0:
    case 3:
      return 1;
    case 4:
      return 2;
    case 2:
      return 3;
    case 6:
      return 4;
    default:
      return 0;
  }
}

bool mayHaveDepth(unsigned colourType, unsigned depth) {
  if (depth == 8) return true;
  if (depth == 16) return colourType != 3;
  const bool small = depth == 1 || depth == 2 || depth == 4;
  return small && (colourType == 0 || colourType == 3);
}

std::optional<Header> headerIn(const PngChunk& chunk) {
  if (chunk.type != "IHDR" || chunk.data.size() != 13) return std::nullopt;
  const auto byte = [&](std::size_t i) { return std::to_integer<unsigned>(chunk.data[i]); };
  const unsigned depth = byte(8);
  const unsigned colourType = byte(9);
  const unsigned channels = channelsOf(colourType);
  if (channels == 0 || !mayHaveDepth(colourType, depth)) return std::nullopt;
  if (byte(10) != 0 || byte(11) != 0 || byte(12) > 1) return std::nullopt;
  const Header header{
      {pngNumber(chunk.data, 0), pngNumber(chunk.data, 4)}, channels * depth, colourType == 3};
  return isAcceptable(header.size) ? std::optional(header) : std::nullopt;
}

/// Whether the pixel data begin as a deflate stream in its zlib frame can.
bool beginsAsZlib(std::array<unsigned, 3> start) {
  const bool isDeflate = (start[0] & 0x0F) == 8 && start[0] >> 4 <= 7;
  const bool checks = (start[0] << 8 | start[1]) % 31 == 0;
  const bool hasDictionary = (start[1] & 0x20) != 0;
  const bool blockTypeExists = (start[2] >> 1 & 3) != 3;
  return isDeflate && checks && !hasDictionary && blockTypeExists;
}

/// Follows the order of the chunks and gathers what is known of the pixel data.
class Sequence {
 public:
  explicit Sequence(const Header& header) : header_(header) {}

  /// False when the chunk must not stand here.
  [[nodiscard]] bool take(const PngChunk& chunk) {
    if (chunk.type == "IDAT") return takePixels(chunk.data);
    pixelsEnded_ = pixelsBegun_;
    if (chunk.type == "PLTE") {
      const bool wellFormed = !chunk.data.empty() && chunk.data.size() % 3 == 0 &&
                              chunk.data.size() <= std::size_t{3} * 256 && !hasPalette_ &&
                              !pixelsBegun_;
      hasPalette_ = true;
      return wellFormed;
    }
    const char first = chunk.type[0];
    return first >= 'a' && first <= 'z';  // only these may be passed over unknown
  }

  [[nodiscard]] bool isComplete() const {
    return startSize_ == start_.size() && beginsAsZlib(start_) && pixelBytes_ >= leastPixelBytes();
  }

 private:
  bool takePixels(ByteView data) {
    if (pixelsEnded_ || (header_.needsPalette && !hasPalette_)) return false;
    pixelsBegun_ = true;
    pixelBytes_ += data.size();
    for (std::size_t i = 0; i < data.size() && startSize_ < start_.size(); ++i) {
      start_[startSize_++] = std::to_integer<unsigned>(data[i]);
    }
    return true;
  }

  /// Deflate never shrinks anything to less than a 1032nd.
  [[nodiscard]] std::uint64_t leastPixelBytes() const {
    constexpr std::uint64_t bestRatio = 1032;
    const std::uint64_t row = (std::uint64_t{header_.size.width} * header_.bitsPerPixel + 7) / 8;
    return header_.size.height * (row + 1) / bestRatio;
  }

  Header header_;
  bool hasPalette_ = false;
  bool pixelsBegun_ = false;
  bool pixelsEnded_ = false;
  std::uint64_t pixelBytes_ = 0;
  std::array<unsigned, 3> start_{};
  std::size_t startSize_ = 0;
};

}  // namespace

bool looksLikePng(ByteView bytes) { return textOf(bytes).starts_with(pngSignature); }

std::optional<EncodedSize> checkedPng(ByteView bytes) {
  if (!looksLikePng(bytes)) return std::nullopt;
  auto rest = bytes.subspan(pngSignature.size());
  const auto first = firstPngChunk(rest);
  const auto header = first ? headerIn(*first) : std::nullopt;
  if (!header) return std::nullopt;
  rest = rest.subspan(first->totalSize);

  Sequence sequence(*header);
  while (const auto chunk = firstPngChunk(rest)) {
    if (chunk->type == "IEND") {
      return chunk->data.empty() && sequence.isComplete() ? std::optional(header->size)
                                                          : std::nullopt;
    }
    if (!sequence.take(*chunk)) return std::nullopt;
    rest = rest.subspan(chunk->totalSize);
  }
  return std::nullopt;
}

}  // namespace vantorel
