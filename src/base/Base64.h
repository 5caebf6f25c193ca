// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "base/Bytes.h"

namespace vantorel {

/// Length of the Base64 form of `byteCount` bytes, padding included.
[[nodiscard]] constexpr std::size_t base64Length(std::size_t byteCount) {
  return (byteCount + 2) / 3 * 4;
}

/// Writes the standard Base64 form of `bytes`, padded, without line breaks, to `to`, which has room
/// for `base64Length` characters.
void writeBase64(char* to, ByteView bytes);

/// Reads exactly what `writeBase64` writes: absent for white space, missing or misplaced padding,
/// foreign characters, or stray bits before the padding. Made by hand, since what libraries read is
/// wider: other padding, or none, and two texts for the same bytes.
[[nodiscard]] std::optional<Bytes> bytesFromBase64(std::string_view text);

}  // namespace vantorel
