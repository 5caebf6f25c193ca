// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>

#include "platform/CaptureLimits.h"
#include "platform/Image.h"

namespace vantorel {

/// The image in `bytes` with the forms made that will be wanted: PNG, and where that is larger than
/// `largestPng` bytes, JPEG at `jpegCompression`. Null when it is no image or cannot be encoded.
/// Takes as long as decoding and encoding do: never on the main thread.
[[nodiscard]] std::shared_ptr<const Image> preparedImage(const ImageDecoder& decoder,
                                                         std::shared_ptr<const Bytes> bytes,
                                                         std::size_t largestPng);

}  // namespace vantorel
