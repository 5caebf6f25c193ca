// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace vantorel {

// Rules for the ASCII characters alone, whatever the locale; others are left as they are.

constexpr char asciiLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr bool isAsciiDigit(char c) { return c >= '0' && c <= '9'; }

constexpr bool isAsciiLetterOrDigit(char c) {
  return isAsciiDigit(c) || (asciiLower(c) >= 'a' && asciiLower(c) <= 'z');
}

/// What a hexadecimal digit counts; -1 for any other character.
constexpr int hexValue(char c) {
  if (isAsciiDigit(c)) return c - '0';
  const char letter = asciiLower(c);
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

[[nodiscard]] inline std::string asciiLowerCased(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), asciiLower);
  return lower;
}

[[nodiscard]] inline bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return asciiLowerCased(text.substr(0, prefix.size())) == asciiLowerCased(prefix);
}

}  // namespace vantorel
