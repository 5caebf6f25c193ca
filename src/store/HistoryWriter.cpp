// SPDX-License-Identifier: MIT
#include "store/HistoryWriter.h"

#include "base/Base64.h"
#include "base/Iso8601.h"
#include "store/HistoryFields.h"
#include "text/Unicode.h"

namespace vantorel {

void HistoryWriter::write(const std::vector<ClipItem>& items) {
  json_.beginArray();
  for (const ClipItem& item : items) entry(item);
  json_.endArray();
}

void HistoryWriter::entry(const ClipItem& item) {
  json_.beginObject();
  for (const auto& [key, member] : historyFields) {
    std::visit([&, key = key](auto place) { field(key, item.*place); }, member);
  }
  json_.endObject();
}

template <class Value>
void HistoryWriter::field(std::string_view key, const Value& value) {
  json_.key(key);
  this->value(value);
}

template <class Value>
void HistoryWriter::field(std::string_view key, const std::optional<Value>& value) {
  if (value) field(key, *value);
}

void HistoryWriter::string(std::string_view text) {
  // The name of a file may be any bytes. Written as they are they would make the whole history
  // unreadable, so what is not UTF-8 is replaced.
  const std::string replaced = isValidUtf8(text) ? std::string() : validUtf8(std::string(text));
  if (!replaced.empty()) text = replaced;
  json_.text(text);
}

void HistoryWriter::value(Date date) { json_.text(iso8601(date)); }

void HistoryWriter::value(const SharedBytes& bytes) {
  writeBase64(json_.plainText(base64Length(bytes.get().size())), bytes.get());
}

void HistoryWriter::value(const FilePaths& paths) {
  json_.beginArray();
  for (const std::string& path : paths) string(path);
  json_.endArray();
}

}  // namespace vantorel
