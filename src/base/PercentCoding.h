// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vantorel {

/// Every byte as %XX, except ASCII letters, digits and the characters in `plain`.
[[nodiscard]] std::string percentEncoded(std::string_view bytes, std::string_view plain);

/// The bytes that the text stands for. A '%' that no two hexadecimal digits follow stands for
/// itself.
[[nodiscard]] std::string percentDecoded(std::string_view text);

}  // namespace vantorel
