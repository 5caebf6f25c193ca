// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vantorel::TextPresentation {

/// Whether the first letter of `text` belongs to a script written from right to left (U+0590 to
/// U+08FF). Text without letters is not.
[[nodiscard]] bool isPrimarilyRTL(std::string_view text);

/// The start of `text` as one line that is safe to lay out: at most `maxCharacters` code points,
/// white space and control characters as single spaces, none at the start, and without the marks
/// that would turn the direction of what stands beside it. "…" follows where text was cut off. The
/// work is bounded by `maxCharacters`, not by the text.
[[nodiscard]] std::string singleLine(std::string_view text, std::size_t maxCharacters);

}  // namespace vantorel::TextPresentation
