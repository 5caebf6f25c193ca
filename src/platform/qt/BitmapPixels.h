// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include "platform/Bitmap.h"

namespace vantorel {

/// A bitmap with these pixels, which measures `size` points. Null for a null image. Any thread.
[[nodiscard]] SharedBitmap bitmapFrom(const QImage& pixels, Size size);

}  // namespace vantorel
