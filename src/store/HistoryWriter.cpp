#include "store/HistoryWriter.h"

#include <array>

#include "store/Base64.h"
#include "store/Iso8601.h"
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
  std::size_t start = 0;
  for (std::size_t i = 0; i < validText.size(); ++i) {
    const auto byte = static_cast<unsigned char>(validText[i]);
    const char escape = escapeOf[byte];
    if (escape == 0) continue;
    stream_.append(validText.substr(start, i - start));
    start = i + 1;
    stream_.Put('\\');
    stream_.Put(escape);
    if (escape == 'u') {
      stream_.append("00");
      stream_.Put(hex[byte >> 4U]);
      stream_.Put(hex[byte & 15U]);
    }
  }
  stream_.append(validText.substr(start));
}

}  // namespace vantorel
