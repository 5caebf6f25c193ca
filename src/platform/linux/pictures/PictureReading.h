// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Bitmap.h"
#include "platform/Image.h"

namespace vantorel {

// Pictures that lie on the disk as the desktop's own. Null when damaged, of no known format or of
// absurd size. What comes out has a point for each pixel. Any thread.

/// An icon, fitted into a square of `side` pixels: a drawing is drawn for it, pixels are made fewer
/// but never more.
[[nodiscard]] SharedBitmap iconWithin(const ImageDecoder& decoder, ByteView bytes, int side);

/// Pixels, fitted into `most`, made fewer but never more. Drawings are no pixels.
[[nodiscard]] SharedBitmap pixelsWithin(const ImageDecoder& decoder, ByteView bytes,
                                        PixelSize most);

}  // namespace vantorel
