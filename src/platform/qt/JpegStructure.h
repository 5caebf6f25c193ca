// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "base/Bytes.h"
#include "platform/qt/ImageLimits.h"

namespace vantorel {

/// Whether the bytes begin as every JPEG does.
[[nodiscard]] bool looksLikeJpeg(ByteView bytes);

/// The size of the image in `bytes`, as it is stored, when they are a whole JPEG of acceptable
/// size: segments that follow one another without a gap, a frame of a kind that can be decoded, at
/// least one scan, and the end marker. No pixel is decoded. What follows the end of the image is
/// not looked at.
[[nodiscard]] std::optional<EncodedSize> checkedJpeg(ByteView bytes);

}  // namespace vantorel
