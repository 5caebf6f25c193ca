// SPDX-License-Identifier: MIT
#pragma once

#include <rapidjson/prettywriter.h>

#include <string_view>

#include "store/ClipItem.h"
#include "store/HistoryJson.h"

namespace vantorel {

/// Writes entries as JSON.
class HistoryWriter : private rapidjson::PrettyWriter<HistoryJson> {
 public:
  explicit HistoryWriter(HistoryJson& json);

  void write(const std::vector<ClipItem>& items);

 private:
  void entry(const ClipItem& item);
  template <class Value>
  void field(std::string_view key, const Value& value);
  template <class Value>
  void field(std::string_view key, const std::optional<Value>& value);

  void string(std::string_view text);
  void value(const std::string& text) { string(text); }
  void value(bool truth) { Bool(truth); }
  void value(std::int64_t number) { Int64(number); }
  void value(Uuid id) { string(id.string()); }
  void value(ClipKind kind) { string(rawValue(kind)); }
  void value(Date date);
  void value(const SharedText& text) { string(text.get()); }
  void value(const SharedBytes& bytes);
  void value(const FilePaths& paths);

  HistoryJson& json_;
};

}  // namespace vantorel
