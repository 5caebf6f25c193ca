// SPDX-License-Identifier: MIT
#include "store/HistoryWriter.h"

#include "base/Base64.h"
#include "base/Iso8601.h"
#include "store/HistoryFields.h"
#include "text/Unicode.h"

namespace vantorel {
HistoryWriter::HistoryWriter(HistoryJson& json) : PrettyWriter(json), json_(json) {
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
  // The name of a file may be any bytes. Written as they are they would make the whole history
  // unreadable, so what is not UTF-8 is replaced.
  const std::string replaced = isValidUtf8(text) ? std::string() : validUtf8(std::string(text));
  if (!replaced.empty()) text = replaced;
  String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void HistoryWriter::value(Date date) { string(iso8601(date)); }

void HistoryWriter::value(const SharedBytes& bytes) {
  PrettyPrefix(rapidjson::kStringType);
  const std::size_t length = base64Length(bytes.get().size());
  char* to = json_.Push(length + 2);
  *to++ = '"';
  writeBase64(to, bytes.get());
  to[length] = '"';
}

void HistoryWriter::value(const FilePaths& paths) {
  StartArray();
  for (const std::string& path : paths) string(path);
  EndArray();
}

}  // namespace vantorel
