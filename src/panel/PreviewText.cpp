// SPDX-License-Identifier: MIT
#include "panel/PreviewText.h"

#include <unicode/uchar.h>

#include <cstdint>
#include <string_view>

#include "chrome/TextPresentation.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

// What a code point costs to lay out, roughly: that of a small alphabet is 1. A piece of 2000 takes
// some milliseconds.
constexpr std::size_t pieceCost = 2000;
constexpr std::size_t lineBreakCost = 8;
constexpr std::size_t rareCost = 4;
constexpr UChar32 firstRare = 0x0900;

// A line may be longer than a piece, so that paragraphs stay whole. Where one has to be broken, it
// is broken at a blank if there is one near its end.
constexpr std::size_t lineCost = 4000;
constexpr std::size_t breakSearch = 400;

// No writing has more of them on one letter; piled up they take long, and other lines' room.
constexpr int maxMarks = 16;

constexpr UChar32 replacement = 0xFFFD;

bool isLineBreak(UChar32 c) {
  return c == '\n' || c == '\v' || c == '\f' || c == '\r' || c == 0x85 || c == 0x2028 ||
         c == 0x2029;
}

bool isOverride(UChar32 c) { return c == 0x202D || c == 0x202E; }

/// What a text layout takes for something other than a character.
bool isForeign(UChar32 c) {
  if (c == '\t') return false;
  return u_charType(c) == U_CONTROL_CHAR || c == 0xFFFC || U_IS_UNICODE_NONCHAR(c);
}

std::size_t cost(UChar32 c) {
  if (isLineBreak(c)) return lineBreakCost;
  return c >= firstRare ? rareCost : 1;
}

bool isMark(UChar32 c) {
  constexpr std::uint32_t marks = U_GC_MN_MASK | U_GC_ME_MASK;
  return (U_GET_GC_MASK(c) & marks) != 0;
}

/// At most `maxBytes`, and no character cut in two.
std::size_t endOfStart(std::string_view text, std::size_t maxBytes) {
  if (text.size() <= maxBytes) return text.size();
  std::size_t end = maxBytes;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return end;
}

}  // namespace

PreviewText::PreviewText(const ClipItem& item)
    : text_(item.text ? *item.text : SharedText(item.preview)) {
  end_ = endOfStart(*text_, maxBytes);
  goesOn_ = end_ < text_->size();
  rtl_ = TextPresentation::isPrimarilyRTL(std::string_view(*text_).substr(0, end_));
}

std::optional<std::string> PreviewText::nextPiece() {
  if (finished_) return std::nullopt;
  std::string piece;
  for (std::size_t spent = readLine(piece); !finished_ && spent < pieceCost;) {
    piece += '\n';
    spent += readLine(piece);
  }
  return piece;
}

std::size_t PreviewText::readLine(std::string& piece) {
  const std::string_view text = std::string_view(*text_).substr(0, end_);
  std::size_t spent = 0;
  int marks = 0;
  while (offset_ < text.size()) {
    const UChar32 c = nextCodePoint(text, offset_);
    spent += cost(c);
    if (isLineBreak(c)) {
      if (c == '\r' && offset_ < text.size() && text[offset_] == '\n') ++offset_;
      return spent;
    }
    marks = isMark(c) ? marks + 1 : 0;
    if (!isOverride(c) && marks <= maxMarks) appendCodePoint(piece, isForeign(c) ? replacement : c);
    const bool atBlank = u_isUWhiteSpace(c) != 0 && spent + breakSearch >= lineCost;
    if ((atBlank || spent >= lineCost) && offset_ < text.size()) return spent;
  }
  finished_ = true;
  return spent;
}

}  // namespace vantorel
