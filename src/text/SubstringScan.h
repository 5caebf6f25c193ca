// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace vantorel {

/// Where `needle` first occurs in `haystack` at or after `from`, else `std::string_view::npos`.
/// Made for texts of megabytes in which it does not occur: reads them at the speed of memory
/// whatever the script, which neither the standard library's search (slowed down by every first
/// byte, in most scripts a frequent one) nor the C library's does for short needles.
[[nodiscard]] std::size_t findBytes(std::string_view haystack, std::string_view needle,
                                    std::size_t from = 0);

}  // namespace vantorel
