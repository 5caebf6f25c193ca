// SPDX-License-Identifier: MIT
#include "text/CaseFolding.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/uloc.h>
#include <unicode/unistr.h>

#include <array>
#include <bitset>
#include <cstdint>
#include <cstring>

#include "text/SubstringScan.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr UChar32 firstOfThreeBytes = 0x800;
constexpr UChar32 firstOfFourBytes = 0x10000;

unsigned byteAt(std::string_view text, std::size_t position) {
  return static_cast<unsigned char>(text[position]);
}

/// The form in which letters and their marks are one where they can be; null without ICU's data.
const icu::Normalizer2* composedForm() {
  static const auto* const form = [] {
    UErrorCode status = U_ZERO_ERROR;
    const auto* found = icu::Normalizer2::getNFCInstance(status);
    return U_SUCCESS(status) ? found : nullptr;
  }();
  return form;
}

icu::UnicodeString composed(const icu::UnicodeString& text) {
  if (composedForm() == nullptr) return text;
  UErrorCode status = U_ZERO_ERROR;
  auto result = composedForm()->normalize(text, status);
  return U_SUCCESS(status) ? result : text;
}

std::uint32_t foldOptions(CaseRules rules) {
  return rules == CaseRules::turkic ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT;
}

icu::UnicodeString utf16(std::string_view text) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

/// Composes first, since the Turkic dotted capital is one letter however it was written, and
/// again afterwards, since folding takes some letters apart.
std::string foldedByTheLibrary(std::string_view text, CaseRules rules) {
  auto folded = composed(utf16(text));
  folded.foldCase(foldOptions(rules));
  std::string result;
  composed(folded).toUTF8String(result);
  return result;
}

/// Whether the character stands for itself: it never composes with what precedes it.
bool beginsAfresh(UChar32 c) {
  return composedForm() != nullptr && composedForm()->hasBoundaryBefore(c);
}

/// What can be folded character by character without asking the library again.
class FoldTable {
 public:
  static constexpr std::uint16_t difficult = 0xFFFF;

  static const FoldTable& of(CaseRules rules) {
    static const FoldTable general{CaseRules::general};
    static const FoldTable turkic{CaseRules::turkic};
    return rules == CaseRules::turkic ? turkic : general;
  }

  /// The folded form of a character of one or two bytes, which takes no more bytes; or `difficult`.
  [[nodiscard]] std::uint16_t folded(UChar32 c) const { return folded_[static_cast<unsigned>(c)]; }

  /// Whether a character of three or four bytes folds to itself.
  [[nodiscard]] bool staysAsItIs(UChar32 c) const {
    return c < firstOfFourBytes ? unchanged_[static_cast<unsigned>(c)] : isUnchanged(c, rules_);
  }

 private:
  explicit FoldTable(CaseRules rules) : rules_(rules) {
    for (UChar32 c = 0; c < firstOfThreeBytes; ++c) folded_[c] = simpleFolding(c, rules);
    for (UChar32 c = firstOfThreeBytes; c < firstOfFourBytes; ++c) {
      unchanged_[static_cast<unsigned>(c)] = isUnchanged(c, rules);
    }
  }

  static std::uint16_t simpleFolding(UChar32 c, CaseRules rules) {
    icu::UnicodeString text(c);
    text.foldCase(foldOptions(rules));
    const bool simple = text.length() == 1 && text.charAt(0) < firstOfThreeBytes &&
                        (c >= 0x80 || text.charAt(0) < 0x80) && beginsAfresh(c) &&
                        beginsAfresh(text.charAt(0)) && isComposed(text.charAt(0));
    return simple ? text.charAt(0) : difficult;
  }

  static bool isUnchanged(UChar32 c, CaseRules rules) {
    return u_hasBinaryProperty(c, UCHAR_CHANGES_WHEN_CASEFOLDED) == 0 &&
           u_foldCase(c, foldOptions(rules)) == c && beginsAfresh(c) && isComposed(c);
  }

  static bool isComposed(UChar32 c) {
    return u_getIntPropertyValue(c, UCHAR_NFC_QUICK_CHECK) == UNORM_YES;
  }

  CaseRules rules_;
  std::array<std::uint16_t, firstOfThreeBytes> folded_{};
  std::bitset<firstOfFourBytes> unchanged_;
};

/// Folds one well-formed text. What the table knows is copied from place to place; what it does
/// not goes through the library together with the character before it, which it may compose with.
class Folding {
 public:
  Folding(std::string_view text, CaseRules rules)
      : text_(text), rules_(rules), table_(FoldTable::of(rules)), output_(text.size(), '\0') {}

  std::string run() {
    while (next_ < text_.size()) {
      if (foldAsciiBlock() || foldSimpleCharacter()) continue;
      foldDifficultRun();
    }
    output_.resize(written_);
    return std::move(output_);
  }

 private:
  static constexpr std::size_t blockSize = 32;
  static constexpr std::size_t leastDifficultRun = 64;

  bool foldAsciiBlock() {
    if (text_.size() - next_ < blockSize || byteAt(text_, next_) >= 0x80) return false;
    const char* const in = text_.data() + next_;
    unsigned char seen = 0;
    unsigned char dotless = 0;
    for (std::size_t i = 0; i < blockSize; ++i) {
      seen = static_cast<unsigned char>(seen | static_cast<unsigned char>(in[i]));
      dotless = static_cast<unsigned char>(dotless | (in[i] == 'I' ? 0xFF : 0));
    }
    if (seen >= 0x80 || (dotless != 0 && rules_ == CaseRules::turkic)) return false;
    char* const out = output_.data() + written_;
    for (std::size_t i = 0; i < blockSize; ++i) {
      const bool capital = in[i] >= 'A' && in[i] <= 'Z';
      out[i] = static_cast<char>(in[i] | (capital ? 0x20 : 0));
    }
    previousStart_ = next_ + blockSize - 1;
    previousWritten_ = written_ + blockSize - 1;
    next_ += blockSize;
    written_ += blockSize;
    return true;
  }

  struct Character {
    UChar32 value;
    std::size_t length;
  };

  [[nodiscard]] Character characterAt(std::size_t position) const {
    const auto lead = byteAt(text_, position);
    const auto rest = [&](std::size_t i) {
      return static_cast<UChar32>(byteAt(text_, position + i) & 0x3F);
    };
    if (lead < 0x80) return {static_cast<UChar32>(lead), 1};
    if (lead < 0xE0) return {static_cast<UChar32>(lead & 0x1F) << 6 | rest(1), 2};
    if (lead < 0xF0) return {static_cast<UChar32>(lead & 0x0F) << 12 | rest(1) << 6 | rest(2), 3};
    return {static_cast<UChar32>(lead & 0x07) << 18 | rest(1) << 12 | rest(2) << 6 | rest(3), 4};
  }

  [[nodiscard]] bool isSimple(UChar32 c) const {
    return c < firstOfThreeBytes ? table_.folded(c) != FoldTable::difficult : table_.staysAsItIs(c);
  }

  bool foldSimpleCharacter() {
    const auto character = characterAt(next_);
    if (!isSimple(character.value)) return false;
    previousStart_ = next_;
    previousWritten_ = written_;
    if (character.length > 2) {
      std::memcpy(output_.data() + written_, text_.data() + next_, character.length);
      written_ += character.length;
    } else if (const unsigned folded = table_.folded(character.value); folded < 0x80) {
      output_[written_++] = static_cast<char>(folded);
    } else {
      output_[written_++] = static_cast<char>(0xC0 | folded >> 6);
      output_[written_++] = static_cast<char>(0x80 | (folded & 0x3F));
    }
    next_ += character.length;
    return true;
  }

  void foldDifficultRun() {
    std::size_t end = next_;
    while (end < text_.size()) {
      const auto character = characterAt(end);
      if (end - next_ >= leastDifficultRun && isSimple(character.value)) break;
      end += character.length;
    }
    const auto folded =
        foldedByTheLibrary(text_.substr(previousStart_, end - previousStart_), rules_);
    written_ = previousWritten_;
    const auto needed = written_ + folded.size() + (text_.size() - end);
    if (output_.size() < needed) output_.resize(needed + needed / 8);
    std::memcpy(output_.data() + written_, folded.data(), folded.size());
    written_ += folded.size();
    next_ = end;
    previousStart_ = next_;
    previousWritten_ = written_;
  }

  std::string_view text_;
  CaseRules rules_;
  const FoldTable& table_;
  std::string output_;
  std::size_t next_ = 0;     // what is to be read
  std::size_t written_ = 0;  // what is written already
  // Where the character before the next one begins, in the text and in the output; the same as
  // the next one where nothing can compose with it.
  std::size_t previousStart_ = 0;
  std::size_t previousWritten_ = 0;
};

/// Whether the text begins with a mark that belongs to the character before it.
bool beginsWithMark(std::string_view text) {
  if (text.empty() || byteAt(text, 0) < 0x80) return false;
  return u_getCombiningClass(utf16(text.substr(0, 4)).char32At(0)) != 0;
}

}  // namespace

CaseRules currentCaseRules() {
  const std::string_view locale = uloc_getDefault();
  const auto language = locale.substr(0, locale.find_first_of("_-@."));
  return language == "tr" || language == "az" ? CaseRules::turkic : CaseRules::general;
}

std::string foldedForSearch(std::string_view text, CaseRules rules) {
  if (!isValidUtf8(text)) return foldedForSearch(validUtf8(std::string(text)), rules);
  return Folding(text, rules).run();
}

bool containsFolded(std::string_view haystack, std::string_view needle) {
  auto found = findBytes(haystack, needle);
  while (found != std::string_view::npos) {
    if (!beginsWithMark(haystack.substr(found + needle.size()))) return true;
    found = findBytes(haystack, needle, found + 1);
  }
  return false;
}

bool narrows(std::string_view longer, std::string_view shorter) {
  return longer.substr(0, shorter.size()) == shorter &&
         !beginsWithMark(longer.substr(shorter.size()));
}

}  // namespace vantorel
