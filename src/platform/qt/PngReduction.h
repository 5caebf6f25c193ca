// SPDX-License-Identifier: MIT
#pragma once

#include "base/Bytes.h"
#include "platform/Bitmap.h"

namespace vantorel {

/// A PNG scaled down with its proportions to fit into `fitting`, never up; its size in points is
/// that of the whole. Needs memory for a row of the whole, unless the PNG is interlaced. Null when
/// it is damaged or not of acceptable size. Throws `std::bad_alloc`. Any thread.
[[nodiscard]] SharedBitmap reducedPng(ByteView png, PixelSize fitting);

}  // namespace vantorel
