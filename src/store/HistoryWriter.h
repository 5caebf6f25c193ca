// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "base/JsonWriter.h"
#include "store/ClipItem.h"

namespace vantorel {

/// Writes entries as JSON.
class HistoryWriter {
 public:
  explicit HistoryWriter(JsonWriter& json) : json_(json) {}

  void write(const std::vector<ClipItem>& items);

 private:
  void entry(const ClipItem& item);
  template <class Value>
  void field(std::string_view key, const Value& value);
  template <class Value>
  void field(std::string_view key, const std::optional<Value>& value);

  void string(std::string_view text);
  void value(const std::string& text) { string(text); }
  void value(bool truth) { json_.boolean(truth); }
  void value(std::int64_t number) { json_.integer(number); }
  void value(Uuid id) { json_.text(id.string()); }
  void value(ClipKind kind) { json_.text(rawValue(kind)); }
  void value(Date date);
  void value(const SharedText& text) { string(text.get()); }
  void value(const SharedBytes& bytes);
  void value(const FilePaths& paths);

  JsonWriter& json_;
};

}  // namespace vantorel
