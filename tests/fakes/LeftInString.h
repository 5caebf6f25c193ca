// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <string>

namespace vantorel {

/// Whether a string's memory holds anything, be it beyond its end, or is larger than a fresh one's.
[[nodiscard]] inline bool isAnythingLeftIn(const std::string& text) {
  const char* const begin = text.data();
  return text.capacity() > std::string().capacity() ||
         std::any_of(begin, begin + text.capacity(), [](char left) { return left != 0; });
}

}  // namespace vantorel
