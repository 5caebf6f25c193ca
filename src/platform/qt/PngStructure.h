// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "base/Bytes.h"
#include "platform/qt/ImageLimits.h"

namespace vantorel {

/// Whether the bytes begin as every PNG does.
[[nodiscard]] bool looksLikePng(ByteView bytes);

/// The size of the image in `bytes` when they are a whole and undamaged PNG of acceptable size:
/// every chunk within the bytes and true to its checksum, the obligatory ones in their order, and
/// pixel data that begins well and is long enough to be what the header claims. No pixel is
/// decoded: what was offered is kept unchanged, so it only has to be complete. What follows the end
/// of the image is not looked at.
[[nodiscard]] std::optional<EncodedSize> checkedPng(ByteView bytes);

}  // namespace vantorel
