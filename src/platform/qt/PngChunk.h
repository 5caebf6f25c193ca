// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/Bytes.h"

namespace vantorel {

/// What every PNG begins with, and then consists of.
inline constexpr std::string_view pngSignature = "\x89PNG\r\n\x1A\n";

struct PngChunk {
  std::string_view type;  // of four letters
  ByteView data;
  std::size_t totalSize;
};

/// The chunk at the start of `bytes`, if it is whole and true to its checksum.
[[nodiscard]] std::optional<PngChunk> firstPngChunk(ByteView bytes);

/// The number of four bytes that stands at `offset`, which is within the bytes.
[[nodiscard]] std::uint32_t pngNumber(ByteView bytes, std::size_t offset);

}  // namespace vantorel
