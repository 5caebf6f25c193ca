// SPDX-License-Identifier: MIT
#pragma once

#include "base/Bytes.h"
#include "platform/qt/ImageLimits.h"

namespace vantorel {

/// The size at which a viewer shows a JPEG that is stored at `stored` and has passed `checkedJpeg`:
/// a camera's picture may be stored lying on its side. Reads only what precedes the pixels.
[[nodiscard]] EncodedSize shownSize(ByteView jpeg, EncodedSize stored);

}  // namespace vantorel
