// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <memory>

#include "base/Bytes.h"

namespace vantorel {

/// The pixels as PNG, losslessly and as fast as a single core allows rather than as small: about
/// a tenth of a second for a screenshot of 3840 × 2160. Null when there are no pixels or no memory
/// for them. Any thread.
[[nodiscard]] std::shared_ptr<const Bytes> encodedPng(const QImage& pixels);

}  // namespace vantorel
