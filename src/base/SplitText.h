// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

/// Cuts the part before the first `separator` off `rest`, and the separator with it; everything
/// when there is none.
std::string_view takePart(std::string_view& rest, char separator);

/// The parts of a list, such as a search path, without the empty ones.
[[nodiscard]] std::vector<std::string> splitList(std::string_view list, char separator);

/// The lines of a text, with the empty ones; the last may end without a line break.
[[nodiscard]] std::vector<std::string> linesOf(std::string_view text);

/// The text without blanks, tabs and carriage returns at its ends.
[[nodiscard]] std::string_view withoutBlanksAround(std::string_view text);

}  // namespace vantorel
