// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/linux/textinpictures/reading/Pixels.h"

namespace vantorel {

// What is drawn, told apart from what it is drawn on. Pure, on any thread.

/// Of a screenshot: each letter is compared with the area that surrounds it, so that light text in
/// a dark sidebar, black text beside it and white text on a coloured button come out alike, and
/// weak contrast as strong as good contrast. Absent when less than two fifths of the picture are
/// areas of one colour, as in a photograph.
[[nodiscard]] std::optional<Ink> inkOnFlatPaper(const ColourPicture& picture);

/// Of a photograph: each pixel is compared with how light the paper is around there, so that a
/// shadow across a receipt does not hide it. A dark picture counts as light writing on dark.
[[nodiscard]] Ink inkOnUnevenPaper(const ColourPicture& picture);

/// The first that applies.
[[nodiscard]] Ink inkOf(const ColourPicture& picture);

}  // namespace vantorel
