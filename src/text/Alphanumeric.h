// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace vantorel {

/// Whether the text is exactly one code point, and that a letter, a mark or a number of any script
/// (categories L, M and N). False for an empty text and for broken UTF-8.
[[nodiscard]] bool isOneAlphanumericScalar(std::string_view text);

}  // namespace vantorel
