// SPDX-License-Identifier: MIT
#include "text/Unicode.h"

#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace vantorel {
namespace {

bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

bool isWhiteSpaceOrNewline(UChar32 c) {
  if (c < 0) return false;
  if (c <= 0x20) return c == 0x20 || (c >= 0x09 && c <= 0x0D);
  return c == 0x85 || (U_GET_GC_MASK(c) & U_GC_Z_MASK) != 0;
}

// The well-formedness of UTF-8 as a state machine whose states are bit offsets: the row of a byte
// holds, at the offset of each state, the offset of the next one. A step is a load that does not
// depend on the state, and one shift.
enum State : unsigned {
  broken = 0,
  complete = 6,
  oneMore = 12,
  twoMore = 18,
  threeMore = 24,
  afterE0 = 30,
  afterED = 36,
  afterF0 = 42,
  afterF4 = 48,
};

constexpr State stateAfterLead(unsigned byte) {
  if (byte < 0x80) return complete;
  if (byte < 0xC2 || byte > 0xF4) return broken;
  if (byte < 0xE0) return oneMore;
  if (byte == 0xE0) return afterE0;
  if (byte == 0xED) return afterED;
  if (byte < 0xF0) return twoMore;
  if (byte == 0xF0) return afterF0;
  return byte == 0xF4 ? afterF4 : threeMore;
}

constexpr State stateAfterContinuation(State state, unsigned byte) {
  const auto within = [byte](unsigned low, unsigned high) { return byte >= low && byte <= high; };
  if (!within(0x80, 0xBF)) return broken;
  switch (state) {
    case oneMore:
      return complete;
    case twoMore:
      return oneMore;
    case threeMore:
      return twoMore;
    case afterE0:
      return within(0xA0, 0xBF) ? oneMore : broken;
    case afterED:
      return within(0x80, 0x9F) ? oneMore : broken;
    case afterF0:
      return within(0x90, 0xBF) ? twoMore : broken;
    case afterF4:
      return within(0x80, 0x8F) ? twoMore : broken;
    case broken:
    case complete:
      break;
  }
  return broken;
}

struct Transitions {
  std::uint64_t rows[256] = {};
};

constexpr Transitions transitions = [] {
  Transitions made;
  for (unsigned byte = 0; byte < 256; ++byte) {
    auto& row = made.rows[byte];
    row |= std::uint64_t{stateAfterLead(byte)} << complete;
    for (const State state : {oneMore, twoMore, threeMore, afterE0, afterED, afterF0, afterF4}) {
      row |= std::uint64_t{stateAfterContinuation(state, byte)} << state;
    }
  }
  return made;
}();

/// The code point at the start of a text, negative where its bytes are broken; and how many bytes
/// it takes, or the longest start of a sequence that went no further.
struct CodePoint {
  UChar32 value;
  std::size_t length;
};

CodePoint firstCodePoint(std::string_view text) {
  std::uint64_t state = complete;
  UChar32 value = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    state = transitions.rows[byte] >> (state & 63);
    if ((state & 63) == broken) return {-1, std::max<std::size_t>(i, 1)};
    if (i > 0) {
      value = value << 6 | (byte & 0x3F);
    } else if (byte < 0x80) {
      value = byte;
    } else {
      value = byte & (byte < 0xE0 ? 0x1F : byte < 0xF0 ? 0x0F : 0x07);
    }
    if ((state & 63) == complete) return {value, i + 1};
  }
  return {-1, text.size()};
}

CodePoint lastCodePoint(std::string_view text) {
  std::size_t start = text.size() - 1;
  const std::size_t lowest = text.size() - std::min<std::size_t>(text.size(), 4);
  while (start > lowest && isContinuation(text[start])) --start;
  const auto found = firstCodePoint(text.substr(start));
  return start + found.length == text.size() ? found : CodePoint{-1, 1};
}

std::size_t startOfCodePointAt(std::string_view text, std::size_t position) {
  while (position > 0 && position < text.size() && isContinuation(text[position])) --position;
  return position;
}

/// One per thread, since a break iterator is bound to the text that it walks; null without ICU's
/// data.
icu::BreakIterator* characterBreaks() {
  thread_local std::unique_ptr<icu::BreakIterator> breaks;
  if (!breaks) {
    UErrorCode status = U_ZERO_ERROR;
    breaks.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  }
  return breaks.get();  // NOLINT: the analyser takes a variable of the thread for a local one
}

/// Where the first `count` characters of `window` end; its size when they do not end in it.
std::size_t endOfCharacters(std::string_view window, std::size_t count) {
  UErrorCode status = U_ZERO_ERROR;
  UText utf8 = UTEXT_INITIALIZER;
  utext_openUTF8(&utf8, window.data(), static_cast<std::int64_t>(window.size()), &status);
  auto* breaks = characterBreaks();
  if (U_FAILURE(status) || breaks == nullptr) {
    return startOfCodePointAt(window, std::min(count, window.size()));
  }
  breaks->setText(&utf8, status);
  std::size_t end = 0;
  for (; count > 0 && end < window.size(); --count) {
    const auto next = breaks->next();
    if (next == icu::BreakIterator::DONE) break;
    end = static_cast<std::size_t>(next);
  }
  utext_close(&utf8);
  return end;
}

bool allAscii(const char* bytes, std::size_t count) {
  unsigned char seen = 0;
  for (std::size_t i = 0; i < count; ++i) seen |= static_cast<unsigned char>(bytes[i]);
  return seen < 0x80;
}

/// Length of the well-formed part at the start of `bytes`.
std::size_t wellFormedPrefix(std::string_view bytes) {
  constexpr std::size_t blockSize = 64;
  std::uint64_t state = complete;
  std::size_t checked = 0;  // everything before belongs to well-formed or unfinished sequences
  while (checked < bytes.size()) {
    const std::size_t count = std::min(blockSize, bytes.size() - checked);
    const char* block = bytes.data() + checked;
    if ((state & 63) != complete || !allAscii(block, count)) {
      auto reached = state;
      for (std::size_t i = 0; i < count; ++i) {
        reached = transitions.rows[static_cast<unsigned char>(block[i])] >> (reached & 63);
      }
      if ((reached & 63) == broken) break;
      state = reached;
    }
    checked += count;
  }
  if (checked == bytes.size() && (state & 63) == complete) return checked;

  // Find the place to the byte, from the start of the sequence that the last block began within.
  std::size_t end = checked;
  if ((state & 63) != complete) {
    do {
      --end;
    } while (end > 0 && isContinuation(bytes[end]));
  }
  while (end < bytes.size()) {
    const auto next = firstCodePoint(bytes.substr(end));
    if (next.value < 0) break;
    end += next.length;
  }
  return end;
}

template <class Mapping>
std::string caseMapped(std::string_view text, Mapping mapping) {
  std::string mapped;
  icu::StringByteSink<std::string> sink(&mapped, static_cast<std::int32_t>(text.size()));
  UErrorCode status = U_ZERO_ERROR;
  mapping("", 0, icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())), sink,
          nullptr, status);
  return U_SUCCESS(status) ? mapped : std::string(text);
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  while (!text.empty()) {
    const auto first = firstCodePoint(text);
    if (!isWhiteSpaceOrNewline(first.value)) break;
    text.remove_prefix(first.length);
  }
  while (!text.empty()) {
    const auto last = lastCodePoint(text);
    if (!isWhiteSpaceOrNewline(last.value)) break;
    text.remove_suffix(last.length);
  }
  return text;
}

std::string_view prefixOfCharacters(std::string_view text, std::size_t count) {
  // Between two ASCII characters there is a boundary, save within CR LF.
  std::size_t end = 0;
  while (count > 0 && end < text.size() && isAscii(text[end])) {
    const std::size_t length = text.substr(end, 2) == "\r\n" ? 2 : 1;
    if (end + length < text.size() && !isAscii(text[end + length])) break;
    end += length;
    --count;
  }
  if (count == 0 || end == text.size()) return text.substr(0, end);

  // Ample for any real writing: most clusters take under 30 bytes, and it is the sum that counts.
  constexpr std::size_t bytesPerCharacter = 64;
  constexpr std::size_t spareBytes = 4096;
  const auto rest = text.substr(end);
  const bool windowed = count < rest.size() && count * bytesPerCharacter + spareBytes < rest.size();
  const auto window =
      windowed ? rest.substr(0, startOfCodePointAt(rest, count * bytesPerCharacter + spareBytes))
               : rest;
  return text.substr(0, end + endOfCharacters(window, count));
}

bool isValidUtf8(std::string_view bytes) { return wellFormedPrefix(bytes) == bytes.size(); }

std::string validUtf8(std::string bytes) {
  std::string_view rest = bytes;
  std::size_t good = wellFormedPrefix(rest);
  if (good == rest.size()) return bytes;

  std::string repaired;
  repaired.reserve(bytes.size() + bytes.size() / 8 + 8);
  while (true) {
    repaired.append(rest.substr(0, good));
    rest.remove_prefix(good);
    if (rest.empty()) return repaired;
    repaired.append("\uFFFD");
    rest.remove_prefix(firstCodePoint(rest).length);
    good = wellFormedPrefix(rest);
  }
}

std::int32_t nextCodePoint(std::string_view text, std::size_t& offset) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  UChar32 c = 0;
  U8_NEXT_OR_FFFD(bytes, offset, text.size(), c);
  return c;
}

void appendCodePoint(std::string& text, std::int32_t codePoint) {
  std::uint8_t bytes[U8_MAX_LENGTH];
  std::size_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, codePoint);
  text.append(reinterpret_cast<const char*>(bytes), length);
}

std::string lowerCased(std::string_view text) {
  return caseMapped(text, [](auto&&... arguments) { icu::CaseMap::utf8ToLower(arguments...); });
}

std::string upperCased(std::string_view text) {
  return caseMapped(text, [](auto&&... arguments) { icu::CaseMap::utf8ToUpper(arguments...); });
}

}  // namespace vantorel
