// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vantorel {

// Pure operations on UTF-8, on any thread. Unless said otherwise the argument is valid UTF-8; with
// broken bytes they stay within bounds and answer something sensible.

/// The text without white space and line breaks at both ends: Unicode's separators (category Z),
/// U+0009 to U+000D and U+0085. Reads only the ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The first `count` characters as a reader counts them (grapheme clusters), or the whole text
/// when it has no more. The work is bounded by `count`, not by the text: a single character that
/// goes on for kilobytes of combining marks is cut between two code points.
[[nodiscard]] std::string_view prefixOfCharacters(std::string_view text, std::size_t count);

/// Whether the bytes are well-formed UTF-8. Several gigabytes a second.
[[nodiscard]] bool isValidUtf8(std::string_view bytes);

/// The bytes themselves when they are well-formed, without a copy; else each broken sequence
/// replaced by one U+FFFD.
[[nodiscard]] std::string validUtf8(std::string bytes);

/// The code point at `offset`, which moves behind it; U+FFFD for bytes that are no UTF-8. `offset`
/// is below the size.
[[nodiscard]] std::int32_t nextCodePoint(std::string_view text, std::size_t& offset);
void appendCodePoint(std::string& text, std::int32_t codePoint);

/// Case mappings that do not depend on the locale.
[[nodiscard]] std::string lowerCased(std::string_view text);
[[nodiscard]] std::string upperCased(std::string_view text);

}  // namespace vantorel
