// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include "base/Bytes.h"
#include "platform/Bitmap.h"
#include "platform/qt/ImageLimits.h"

namespace vantorel {

/// The pixels of an encoded image, turned as its maker meant it to be seen. Null when it is
/// damaged, of none of the formats of `imageFormatOf`, or not of acceptable size. Formats that are
/// text, or drawings of any size, are not images here: a copied program must not become one. Any
/// thread.
[[nodiscard]] QImage decodedPixels(ByteView bytes);

/// The same, scaled down with its proportions to fit into `fitting`, never up, and no side shorter
/// than one pixel; its size in points is that of the whole. Null too when there is no memory.
[[nodiscard]] SharedBitmap reducedPixels(ByteView bytes, PixelSize fitting);

}  // namespace vantorel
