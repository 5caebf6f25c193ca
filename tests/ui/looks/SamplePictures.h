// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

#include "platform/Bitmap.h"

namespace vantorel {

/// A screenshot of something: a bar, a column and lines.
[[nodiscard]] SharedBitmap screenshot(const QColor& paper);
/// A dark drawing on nothing.
[[nodiscard]] SharedBitmap logo();
/// A coloured tile with a letter, as applications have them.
[[nodiscard]] SharedBitmap icon(const QColor& color, const char* letter, int side = 64);

}  // namespace vantorel
