// SPDX-License-Identifier: MIT
#include "base/PercentCoding.h"

#include "base/Ascii.h"

namespace vantorel {

std::string percentEncoded(std::string_view bytes, std::string_view plain) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    if (isAsciiLetterOrDigit(c) || plain.find(c) != std::string_view::npos) {
      text += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    text += {'%', digits[byte >> 4U], digits[byte & 15U]};
  }
  return text;
}

std::string percentDecoded(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isEscape = text[i] == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 &&
                          hexValue(text[i + 2]) >= 0;
    bytes +=
        isEscape ? static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2])) : text[i];
    if (isEscape) i += 2;
  }
  return bytes;
}

}  // namespace vantorel
