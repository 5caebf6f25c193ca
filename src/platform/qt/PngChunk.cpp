// SPDX-License-Identifier: MIT
#include "platform/qt/PngChunk.h"

#include <libdeflate.h>

namespace vantorel {

std::uint32_t pngNumber(ByteView bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    value = value << 8 | std::to_integer<std::uint32_t>(bytes[offset + i]);
  }
  return value;
}

std::optional<PngChunk> firstPngChunk(ByteView bytes) {
  constexpr std::size_t framing = 12;  // length, type, checksum
  if (bytes.size() < framing) return std::nullopt;
  const std::size_t length = pngNumber(bytes, 0);
  if (length > bytes.size() - framing) return std::nullopt;
  const auto typeAndData = bytes.subspan(4, 4 + length);
  const auto checksum = libdeflate_crc32(0, typeAndData.data(), typeAndData.size());
  if (checksum != pngNumber(bytes, 8 + length)) return std::nullopt;
  return PngChunk{textOf(typeAndData.first(4)), typeAndData.subspan(4), framing + length};
}

}  // namespace vantorel
