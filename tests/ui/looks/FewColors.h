// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

namespace vantorel {

/// An opaque picture in 255 of its own colours, so chosen that no pixel's colour is far from what
/// it was. Makes files small.
[[nodiscard]] QImage inFewColors(const QImage& image);

}  // namespace vantorel
