#include "chrome/TextPresentation.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

namespace vantorel::TextPresentation {
namespace {

constexpr UChar32 firstRtl = 0x0590;
constexpr UChar32 lastRtl = 0x08FF;

bool isDirectionMark(UChar32 c) {
  return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

/// White space, line breaks, and what has no picture at all.
bool isBlank(UChar32 c) {
  return u_isUWhiteSpace(c) != 0 || u_charType(c) == U_CONTROL_CHAR || c == 0xFEFF || c == 0xFFFC;
}

/// The code point at `offset`, which moves behind it; U+FFFD for bytes that are no UTF-8.
UChar32 next(std::string_view text, std::size_t& offset) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  UChar32 c = 0;
  U8_NEXT_OR_FFFD(bytes, offset, text.size(), c);
  return c;
}

void append(std::string& out, UChar32 c) {
  std::uint8_t bytes[U8_MAX_LENGTH];
  std::size_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, c);
  out.append(reinterpret_cast<const char*>(bytes), length);
}

}  // namespace

bool isPrimarilyRTL(std::string_view text) {
  for (std::size_t offset = 0; offset < text.size();) {
    const UChar32 c = next(text, offset);
    if (c >= firstRtl && c <= lastRtl) return true;
    if (u_isalpha(c) != 0) return false;
  }
  return false;
}

std::string singleLine(std::string_view text, std::size_t maxCharacters) {
  // Blanks and marks are skipped, so what is read is bounded apart from what is kept.
  constexpr std::size_t readPerKept = 8;
  std::string line;
  std::size_t kept = 0;
  std::size_t read = 0;
  bool blankBefore = false;
  std::size_t offset = 0;
  while (offset < text.size() && kept < maxCharacters && read < maxCharacters * readPerKept) {
    const UChar32 c = next(text, offset);
    ++read;
    if (isDirectionMark(c)) continue;
    if (isBlank(c)) {
      blankBefore = true;
      continue;
    }
    if (blankBefore && !line.empty()) {
      line += ' ';
      ++kept;
    }
    blankBefore = false;
    append(line, c);
    ++kept;
  }
  if (offset < text.size()) line += "…";
  return line;
}

}  // namespace vantorel::TextPresentation
