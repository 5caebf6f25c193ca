#include "store/HistoryWriter.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "base/Base64.h"
#include "base/Iso8601.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

/// What follows the backslash for each byte: 0 for a byte that stands for itself, 'u' for one that
/// only its number can name.
constexpr std::array<char, 256> escapes() {
  std::array<char, 256> table{};
  for (std::size_t i = 0; i < 0x20; ++i) table[i] = 'u';
  table['\b'] = 'b';
  table['\f'] = 'f';
  table['\n'] = 'n';
  table['\r'] = 'r';
  table['\t'] = 't';
  table['"'] = '"';
  table['\\'] = '\\';
  return table;
}
constexpr auto escapeOf = escapes();
constexpr std::size_t longestEscape = 6;  // \u0000

bool mustBeEscaped(char c) { return escapeOf[static_cast<unsigned char>(c)] != 0; }

/// How many bytes at the front of the text stand for themselves. Eight are looked at in one go:
/// texts are long, and seldom hold what must be escaped.
std::size_t plainLength(std::string_view text) {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  constexpr std::uint64_t highBits = ones * 0x80U;
  // Marks bytes below `limit`, which is at most 0x80, and perhaps some after the first of them.
  const auto below = [](std::uint64_t word, std::uint64_t limit) {
    return (word - ones * limit) & ~word & highBits;
  };
  std::size_t i = 0;
  for (; i + 8 <= text.size(); i += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + i, 8);
    const std::uint64_t quotes = word ^ (ones * static_cast<unsigned char>('"'));
    const std::uint64_t backslashes = word ^ (ones * static_cast<unsigned char>('\\'));
    if ((below(word, 0x20) | below(quotes, 1) | below(backslashes, 1)) != 0) break;
  }
  while (i < text.size() && !mustBeEscaped(text[i])) ++i;
  return i;
}

char* copy(char* to, std::string_view text) {
  std::memcpy(to, text.data(), text.size());
  return to + text.size();
}

}  // namespace

HistoryWriter::HistoryWriter(BytesStream& stream) : PrettyWriter(stream), stream_(stream) {
  SetIndent(' ', 2);
}

void HistoryWriter::write(const std::vector<ClipItem>& items) {
  StartArray();
  for (const ClipItem& entry : items) item(entry);
  EndArray();
}

void HistoryWriter::item(const ClipItem& item) {
  StartObject();
  field(HistoryKey::assetFilename, item.assetFilename);
  field(HistoryKey::contentHash, item.contentHash);
  textField(HistoryKey::createdAt, iso8601(item.createdAt));
  field(HistoryKey::customName, item.customName);
  key(HistoryKey::filePaths);
  StartArray();
  for (const std::string& path : item.filePaths) string(path);
  EndArray();
  field(HistoryKey::htmlData, item.htmlData);
  textField(HistoryKey::id, item.id.string());
  if (item.isPinned) {
    key(HistoryKey::isPinned);
    Bool(*item.isPinned);
  }
  textField(HistoryKey::kind, rawValue(item.kind));
  field(HistoryKey::lastCopiedAt, item.lastCopiedAt);
  if (item.pinOrder) {
    key(HistoryKey::pinOrder);
    Int64(*item.pinOrder);
  }
  textField(HistoryKey::preview, item.preview);
  field(HistoryKey::recognizedText, item.recognizedText);
  field(HistoryKey::rtfData, item.rtfData);
  field(HistoryKey::sourceAppName, item.sourceAppName);
  field(HistoryKey::sourceBundleIdentifier, item.sourceBundleIdentifier);
  field(HistoryKey::text, item.text);
  textField(HistoryKey::title, item.title);
  EndObject();
}

void HistoryWriter::key(HistoryKey key) { string(name(key)); }

void HistoryWriter::textField(HistoryKey key, std::string_view text) {
  this->key(key);
  string(text);
}

void HistoryWriter::field(HistoryKey key, const std::optional<std::string>& text) {
  if (text) textField(key, *text);
}

void HistoryWriter::field(HistoryKey key, const std::optional<SharedText>& text) {
  if (text) textField(key, text->get());
}

void HistoryWriter::field(HistoryKey key, const std::optional<SharedBytes>& bytes) {
  if (!bytes) return;
  this->key(key);
  PrettyPrefix(rapidjson::kStringType);
  stream_.Put('"');
  appendBase64(stream_.bytes(), bytes->get());
  stream_.Put('"');
}

void HistoryWriter::field(HistoryKey key, const std::optional<Date>& date) {
  if (date) textField(key, iso8601(*date));
}

void HistoryWriter::string(std::string_view text) {
  PrettyPrefix(rapidjson::kStringType);
  stream_.Put('"');
  // A name of a file may be any bytes. Written as they are they would make the whole history
  // unreadable, so what is not UTF-8 is replaced.
  if (isValidUtf8(text)) {
    escaped(text);
  } else {
    escaped(validUtf8(std::string(text)));
  }
  stream_.Put('"');
}

void HistoryWriter::escaped(std::string_view validText) {
  constexpr std::string_view hex = "0123456789abcdef";
  // Room for the worst first, so that nothing has to be checked on the way.
  Bytes& out = stream_.bytes();
  const std::size_t start = out.size();
  out.resize(start + escapedLengthAtMost(validText));
  char* const begin = reinterpret_cast<char*>(out.data());
  char* to = begin + start;
  for (;;) {
    const std::size_t plain = plainLength(validText);
    to = copy(to, validText.substr(0, plain));
    if (plain == validText.size()) break;
    const auto byte = static_cast<unsigned char>(validText[plain]);
    validText.remove_prefix(plain + 1);
    *to++ = '\\';
    *to++ = escapeOf[byte];
    if (escapeOf[byte] == 'u') {
      to = copy(to, "00");
      *to++ = hex[byte >> 4U];
      *to++ = hex[byte & 15U];
    }
  }
  out.resize(static_cast<std::size_t>(to - begin));
}

std::size_t HistoryWriter::escapedLengthAtMost(std::string_view text) {
  // Written so that the compiler counts many bytes at once.
  std::size_t escapes = 0;
  for (const char c : text) {
    escapes +=
        static_cast<std::size_t>(static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\');
  }
  return text.size() + escapes * (longestEscape - 1);
}

}  // namespace vantorel
