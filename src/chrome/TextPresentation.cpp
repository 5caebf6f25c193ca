// SPDX-License-Identifier: MIT
#include "chrome/TextPresentation.h"

#include <unicode/uchar.h>

#include "text/Unicode.h"

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

}  // namespace

bool isPrimarilyRTL(std::string_view text) {
  for (std::size_t offset = 0; offset < text.size();) {
    const UChar32 c = nextCodePoint(text, offset);
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
    const UChar32 c = nextCodePoint(text, offset);
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
    appendCodePoint(line, c);
    ++kept;
  }
  if (offset < text.size()) line += "…";
  return line;
}

}  // namespace vantorel::TextPresentation
