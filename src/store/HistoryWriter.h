#pragma once

#include <rapidjson/prettywriter.h>

#include <string_view>

#include "base/Bytes.h"
#include "store/ClipItem.h"
#include "store/HistoryKeys.h"

namespace vantorel {

/// Lets RapidJSON write into bytes.
class BytesStream {
 public:
  using Ch = char;
  explicit BytesStream(Bytes& bytes) : bytes_(bytes) {}

  void Put(char c) { bytes_.push_back(static_cast<std::byte>(c)); }
  void Flush() {}
  void append(std::string_view text) {
    const ByteView view = bytesOf(text);
    bytes_.insert(bytes_.end(), view.begin(), view.end());
  }
  Bytes& bytes() { return bytes_; }

 private:
  Bytes& bytes_;
};

/// Writes entries as JSON. RapidJSON keeps the structure; strings, which are nearly all of a
/// history, are copied in runs rather than character by character.
class HistoryWriter : private rapidjson::PrettyWriter<BytesStream> {
 public:
  explicit HistoryWriter(BytesStream& stream);

  void write(const std::vector<ClipItem>& items);
  /// The room that the text takes in the JSON, without its quotes; perhaps less.
  [[nodiscard]] static std::size_t escapedLengthAtMost(std::string_view text);

 private:
  void item(const ClipItem& item);
  void key(HistoryKey key);
  void textField(HistoryKey key, std::string_view text);
  void field(HistoryKey key, const std::optional<std::string>& text);
  void field(HistoryKey key, const std::optional<SharedText>& text);
  void field(HistoryKey key, const std::optional<SharedBytes>& bytes);
  void field(HistoryKey key, const std::optional<Date>& date);
  void string(std::string_view text);
  void escaped(std::string_view validText);

  BytesStream& stream_;
};

}  // namespace vantorel
