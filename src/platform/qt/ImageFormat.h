// SPDX-License-Identifier: MIT
#pragma once

#include "base/Bytes.h"

namespace vantorel {

/// The toolkit's name for the format that the bytes begin as, of those whose code may see bytes
/// from outside: PNG, JPEG, GIF, BMP, TIFF, WebP and ICO. Null for any other: it is not ours to
/// decode. Says nothing of whether they are sound.
[[nodiscard]] const char* imageFormatOf(ByteView bytes);

}  // namespace vantorel
