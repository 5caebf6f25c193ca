#include "store/HistoryWriter.h"

#include <algorithm>

#include "base/Base64.h"
#include "base/Iso8601.h"
#include "store/HistoryFields.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

/// RapidJSON writes \u001F, a history \u001f.
void makeEscapesSmall(Bytes::iterator from, Bytes::iterator end) {
  for (;;) {
    from = std::find(from, end, std::byte('\\'));
    if (from == end) return;
    if (from[1] == std::byte('u') && from[5] >= std::byte('A')) from[5] |= std::byte(0x20);
    from += 2;
  }
}

}  // namespace

HistoryWriter::HistoryWriter(BytesStream& stream) : PrettyWriter(stream), stream_(stream) {
  SetIndent(' ', 2);
}

void HistoryWriter::write(const std::vector<ClipItem>& items) {
  StartArray();
  for (const ClipItem& item : items) entry(item);
  EndArray();
}

void HistoryWriter::entry(const ClipItem& item) {
  StartObject();
  for (const auto& [key, member] : historyFields) {
    std::visit([&, key = key](auto place) { field(key, item.*place); }, member);
  }
  EndObject();
}

template <class Value>
void HistoryWriter::field(std::string_view key, const Value& value) {
  string(key);
  this->value(value);
}

template <class Value>
void HistoryWriter::field(std::string_view key, const std::optional<Value>& value) {
  if (value) field(key, *value);
}

void HistoryWriter::string(std::string_view text) {
  const std::size_t start = stream_.bytes().size();
  // The name of a file may be any bytes. Written as they are they would make the whole history
  // unreadable, so what is not UTF-8 is replaced.
  const std::string replaced = isValidUtf8(text) ? std::string() : validUtf8(std::string(text));
  if (!replaced.empty()) text = replaced;
  String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  makeEscapesSmall(stream_.bytes().begin() + static_cast<std::ptrdiff_t>(start),
                   stream_.bytes().end());
}

void HistoryWriter::value(Date date) { string(iso8601(date)); }

void HistoryWriter::value(const SharedBytes& bytes) {
  PrettyPrefix(rapidjson::kStringType);
  stream_.Put('"');
  appendBase64(stream_.bytes(), bytes.get());
  stream_.Put('"');
}

void HistoryWriter::value(const std::vector<std::string>& texts) {
  StartArray();
  for (const std::string& text : texts) string(text);
  EndArray();
}

}  // namespace vantorel
