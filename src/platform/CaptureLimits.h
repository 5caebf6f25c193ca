// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace vantorel {

// What the history takes, for those who prepare its contents too: an adapter that makes something
// else makes it in vain, or has it made again on the main thread.

/// One encoded image.
inline constexpr std::size_t largestEncodedImage = 12'582'912;
/// Of an image that is too large as a PNG; 1 is the best quality.
inline constexpr double jpegCompression = 0.86;
/// Characters, as a reader counts them, of the text in a picture; more would only burden the
/// history and the search.
inline constexpr std::size_t longestRecognizedText = 8000;

}  // namespace vantorel
