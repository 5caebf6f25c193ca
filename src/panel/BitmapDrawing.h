// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include "platform/Bitmap.h"

namespace vantorel::BitmapDrawing {

/// The bitmap as the toolkit sees it: its pixels are shared, not copied. Null for none, and for one
/// that has not as many pixels as it says.
[[nodiscard]] QImage wrapped(const SharedBitmap& bitmap);

/// The bitmap at `pixels`, smooth, however large it was; at least one pixel each way.
[[nodiscard]] QImage scaled(const SharedBitmap& bitmap, QSize pixels);

enum class Coverage {
  full,           // no pixel lets anything through
  partial,        // some do
  partialCorners  // those at the corners do, as in icons
};
[[nodiscard]] Coverage coverage(const QImage& image);

/// Two greys in squares, behind pictures that let it through: whatever their colour, they are seen.
void fillTransparencyPattern(QImage& image, int squarePixels);

/// The picture with its corners rounded. Radius in pixels.
[[nodiscard]] QImage rounded(const QImage& image, double radius);

}  // namespace vantorel::BitmapDrawing
