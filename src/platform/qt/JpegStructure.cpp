// SPDX-License-Identifier: MIT
#include "platform/qt/JpegStructure.h"

#include <cstring>

namespace vantorel {
namespace {

enum Marker : unsigned {
  stuffedByte = 0x00,
  temporary = 0x01,
  firstFrame = 0xC0,
  huffmanTables = 0xC4,
  extensions = 0xC8,
  arithmeticConditioning = 0xCC,
  lastFrame = 0xCF,
  firstRestart = 0xD0,
  lastRestart = 0xD7,
  startOfImage = 0xD8,
  endOfImage = 0xD9,
  startOfScan = 0xDA,
  fill = 0xFF,
};

bool isRestart(unsigned marker) { return marker >= firstRestart && marker <= lastRestart; }

bool isFrame(unsigned marker) {
  return marker >= firstFrame && marker <= lastFrame && marker != huffmanTables &&
         marker != extensions && marker != arithmeticConditioning;
}

/// Sequential and progressive, Huffman and arithmetic coding; neither lossless nor hierarchical.
bool canBeDecoded(unsigned frame) { return frame <= 0xC2 || frame == 0xC9 || frame == 0xCA; }

/// Walks over the markers of a JPEG. Every step answers false at the first thing out of order.
class Walk {
 public:
  explicit Walk(ByteView bytes) : bytes_(bytes) {}

  [[nodiscard]] std::optional<EncodedSize> run() {
    if (nextMarker() != startOfImage) return std::nullopt;
    while (const auto marker = nextMarker()) {
      if (*marker == endOfImage) return hasScan_ ? size_ : std::nullopt;
      if (!passSegment(*marker)) return std::nullopt;
    }
    return std::nullopt;
  }

 private:
  [[nodiscard]] unsigned byte(std::size_t offset) const {
    return std::to_integer<unsigned>(bytes_[offset]);
  }

  [[nodiscard]] std::optional<unsigned> nextMarker() {
    if (position_ >= bytes_.size() || byte(position_) != fill) return std::nullopt;
    while (position_ < bytes_.size() && byte(position_) == fill) ++position_;
    if (position_ >= bytes_.size()) return std::nullopt;
    return byte(position_++);
  }

  [[nodiscard]] bool passSegment(unsigned marker) {
    if (marker == temporary) return true;
    if (marker == stuffedByte || marker == startOfImage || isRestart(marker)) return false;
    if (bytes_.size() - position_ < 2) return false;
    const std::size_t length = byte(position_) << 8 | byte(position_ + 1);
    if (length < 2 || length > bytes_.size() - position_) return false;
    const auto data = bytes_.subspan(position_ + 2, length - 2);
    position_ += length;
    if (isFrame(marker)) return takeFrame(marker, data);
    if (marker == startOfScan) return passScan(data);
    return true;
  }

  [[nodiscard]] bool takeFrame(unsigned marker, ByteView data) {
    if (size_ || !canBeDecoded(marker) || data.size() < 6) return false;
    const auto at = [&](std::size_t i) { return std::to_integer<unsigned>(data[i]); };
    const unsigned precision = at(0);
    const unsigned components = at(5);
    const bool knownColours = components == 1 || components == 3 || components == 4;
    if (precision != 8 || !knownColours || data.size() != 6 + 3 * components) return false;
    size_ = EncodedSize{at(3) << 8 | at(4), at(1) << 8 | at(2)};
    return isAcceptable(*size_);
  }

  /// Passes the coded data behind a scan's header: up to the next marker that is no restart.
  [[nodiscard]] bool passScan(ByteView header) {
    if (!size_ || header.size() < 6) return false;
    hasScan_ = true;
    while (position_ + 1 < bytes_.size()) {
      const auto* const start = bytes_.data() + position_;
      const void* const found =
          std::memchr(start, static_cast<int>(fill), bytes_.size() - position_ - 1);
      if (found == nullptr) return false;
      position_ += static_cast<std::size_t>(static_cast<const std::byte*>(found) - start);
      const unsigned next = byte(position_ + 1);
      if (next != stuffedByte && next != fill && !isRestart(next)) return true;
      position_ += next == fill ? 1 : 2;
    }
    return false;
  }

  ByteView bytes_;
  std::size_t position_ = 0;
  std::optional<EncodedSize> size_;
  bool hasScan_ = false;
};

}  // namespace

bool looksLikeJpeg(ByteView bytes) {
  return bytes.size() >= 3 && bytes[0] == std::byte{fill} && bytes[1] == std::byte{startOfImage} &&
         bytes[2] == std::byte{fill};
}

std::optional<EncodedSize> checkedJpeg(ByteView bytes) {
  return looksLikeJpeg(bytes) ? Walk(bytes).run() : std::nullopt;
}

}  // namespace vantorel
