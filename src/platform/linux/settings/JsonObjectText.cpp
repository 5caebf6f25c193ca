// SPDX-License-Identifier: MIT
#include "platform/linux/settings/JsonObjectText.h"

#include <rapidjson/document.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <set>

#include "base/Iso8601.h"

namespace vantorel {
namespace {

constexpr unsigned parseFlags =
    rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
/// A number of any length is kept as it stands.
constexpr unsigned collectFlags = parseFlags | rapidjson::kParseNumbersAsStringsFlag;

using ValidatingWriter =
    rapidjson::Writer<rapidjson::StringBuffer, rapidjson::UTF8<>, rapidjson::UTF8<>,
                      rapidjson::CrtAllocator, rapidjson::kWriteValidateEncodingFlag>;

bool writeString(ValidatingWriter& writer, std::string_view text) {
  return writer.String(text.data(), static_cast<unsigned>(text.size()));
}

std::optional<std::string> quotedText(std::string_view text) {
  rapidjson::StringBuffer buffer;
  ValidatingWriter writer(buffer);
  if (!writeString(writer, text)) return std::nullopt;
  return std::string(buffer.GetString(), buffer.GetSize());
}

/// Follows the reader through one object and cuts its members' values out of the text. Answering
/// false ends the reading.
class MemberCollector {
 public:
  using Ch = char;

  MemberCollector(std::string_view text, const rapidjson::MemoryStream& stream)
      : text_(text), stream_(stream) {}

  bool Null() { return valueEnded(); }
  bool Bool(bool /*value*/) { return valueEnded(); }
  bool Int(int /*value*/) { return valueEnded(); }
  bool Uint(unsigned /*value*/) { return valueEnded(); }
  bool Int64(std::int64_t /*value*/) { return valueEnded(); }
  bool Uint64(std::uint64_t /*value*/) { return valueEnded(); }
  bool Double(double /*value*/) { return valueEnded(); }
  bool RawNumber(const char* /*value*/, unsigned /*length*/, bool /*copy*/) { return valueEnded(); }
  // The reader lets half of a pair of surrogates pass, which could not be written again.
  bool String(const char* value, unsigned length, bool /*copy*/) {
    return isJsonKey({value, length}) && valueEnded();
  }
  bool StartObject() { return ++depth_ <= maximumJsonDepth; }
  bool EndObject(unsigned /*count*/) {
    --depth_;
    return depth_ == 0 || valueEnded(stream_.Tell() + 1);
  }
  bool StartArray() { return depth_ > 0 && ++depth_ <= maximumJsonDepth; }
  bool EndArray(unsigned /*count*/) {
    --depth_;
    return valueEnded(stream_.Tell() + 1);
  }

  bool Key(const char* name, unsigned length, bool /*copy*/) {
    if (depth_ != 1) return true;
    if (!isJsonKey({name, length})) return false;
    members_.push_back({std::string(name, length), {}});
    valueBegin_ = stream_.Tell();
    return keys_.insert(members_.back().key).second;
  }

  [[nodiscard]] std::vector<JsonMember> take() { return std::move(members_); }

 private:
  bool valueEnded() { return valueEnded(stream_.Tell()); }

  /// `end` is past the value: the reader tells of a closing bracket before it consumes it. False
  /// for a value that is no member of anything: the text is not an object then.
  bool valueEnded(std::size_t end) {
    if (depth_ == 0) return false;
    if (depth_ > 1) return true;
    const auto begin = text_.find_first_not_of(" \t\r\n:", valueBegin_);
    members_.back().text = std::string(text_.substr(begin, end - begin));
    return true;
  }

  std::string_view text_;
  const rapidjson::MemoryStream& stream_;
  std::vector<JsonMember> members_;
  std::set<std::string> keys_;
  std::size_t valueBegin_ = 0;
  int depth_ = 0;
};

rapidjson::Document document(const std::string& text) {
  rapidjson::Document result;
  result.Parse<parseFlags>(text.data(), text.size());
  return result;
}

std::string stringOf(const rapidjson::Value& value) {
  return {value.GetString(), value.GetStringLength()};
}

bool write(ValidatingWriter& writer, bool value) { return writer.Bool(value); }
bool write(ValidatingWriter& writer, std::int64_t value) { return writer.Int64(value); }
bool write(ValidatingWriter& writer, double value) { return writer.Double(value); }
bool write(ValidatingWriter& writer, const std::string& value) {
  return writeString(writer, value);
}
bool write(ValidatingWriter& writer, Date value) {
  return fitsIso8601(value) && writeString(writer, iso8601(value, DateFraction::kept));
}
bool write(ValidatingWriter& writer, const std::vector<std::string>& values) {
  writer.StartArray();
  for (const std::string& value : values) {
    if (!writeString(writer, value)) return false;
  }
  return writer.EndArray();
}

}  // namespace

std::optional<std::vector<JsonMember>> parseJsonObject(std::string_view text) {
  rapidjson::MemoryStream stream(text.data(), text.size());
  rapidjson::Reader reader;
  MemberCollector collector(text, stream);
  // The end of the memory reads as a NUL, which the reader takes for the end of the text: only at
  // the very end has the whole of it been read.
  if (reader.Parse<collectFlags>(stream, collector).IsError() || stream.Tell() < text.size()) {
    return std::nullopt;
  }
  return collector.take();
}

std::string jsonObjectText(const std::vector<JsonMember>& members) {
  std::string result = "{";
  const char* separator = "\n  ";
  for (const JsonMember& member : members) {
    result += separator;
    result += quotedText(member.key).value_or("\"\"");
    result += ": ";
    result += member.text;
    separator = ",\n  ";
  }
  result += "\n}\n";
  return result;
}

std::optional<std::string> jsonText(const DefaultsValue& value) {
  rapidjson::StringBuffer buffer;
  ValidatingWriter writer(buffer);
  const bool written = std::visit([&](const auto& v) { return write(writer, v); }, value);
  if (!written) return std::nullopt;
  return std::string(buffer.GetString(), buffer.GetSize());
}

bool isJsonKey(std::string_view key) { return quotedText(key).has_value(); }

std::optional<bool> jsonBoolean(const std::string& text) {
  const auto value = document(text);
  if (!value.IsBool()) return std::nullopt;
  return value.GetBool();
}

std::optional<std::int64_t> jsonInteger(const std::string& text) {
  const auto value = document(text);
  if (!value.IsInt64()) return std::nullopt;
  return value.GetInt64();
}

std::optional<std::string> jsonString(const std::string& text) {
  const auto value = document(text);
  if (!value.IsString()) return std::nullopt;
  return stringOf(value);
}

std::optional<std::vector<std::string>> jsonStringArray(const std::string& text) {
  const auto value = document(text);
  if (!value.IsArray()) return std::nullopt;
  std::vector<std::string> result;
  for (const auto& element : value.GetArray()) {
    if (!element.IsString()) return std::nullopt;
    result.push_back(stringOf(element));
  }
  return result;
}

}  // namespace vantorel
