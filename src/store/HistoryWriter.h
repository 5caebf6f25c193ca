#pragma once

#include <rapidjson/prettywriter.h>

#include <string_view>

#include "base/Bytes.h"
#include "store/ClipItem.h"

namespace vantorel {

/// Lets RapidJSON write into bytes.
class BytesStream {
 public:
  using Ch = char;
  explicit BytesStream(Bytes& bytes) : bytes_(bytes) {}

  void Put(char c) { bytes_.push_back(static_cast<std::byte>(c)); }
  void Flush() {}
  Bytes& bytes() { return bytes_; }

 private:
  Bytes& bytes_;
};

/// Writes entries as JSON.
class HistoryWriter : private rapidjson::PrettyWriter<BytesStream> {
 public:
  explicit HistoryWriter(BytesStream& stream);

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
  void value(const std::vector<std::string>& texts);

  BytesStream& stream_;
};

}  // namespace vantorel
