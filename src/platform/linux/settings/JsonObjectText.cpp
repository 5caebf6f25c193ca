// SPDX-License-Identifier: MIT
#include "platform/linux/settings/JsonObjectText.h"

#include <cmath>
#include <set>
#include <utility>

#include "base/Bytes.h"
#include "base/Iso8601.h"
#include "base/JsonReader.h"
#include "base/JsonValue.h"
#include "base/JsonWriter.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

/// Follows the reader through one object and cuts its members' values out of the text. Answering
/// false ends the reading.
class MemberCollector : public JsonEvents {
 public:
  /// `position` is the reader's.
  MemberCollector(std::string_view text, const std::size_t& position)
      : text_(text), position_(position) {}

  bool null() override { return valueEnded(position_); }
  bool boolean(bool /*value*/) override { return valueEnded(position_); }
  bool integer(std::int64_t /*value*/) override { return valueEnded(position_); }
  bool real(double /*value*/) override { return valueEnded(position_); }
  // The reader lets half of a pair of surrogates pass, which could not be written again.
  bool text(std::string_view text) override { return isValidUtf8(text) && valueEnded(position_); }
  bool beginObject() override { return ++depth_ <= maximumJsonDepth; }
  bool endObject() override {
    --depth_;
    return depth_ == 0 || valueEnded(position_ + 1);
  }
  bool beginArray() override { return depth_ > 0 && ++depth_ <= maximumJsonDepth; }
  bool endArray() override {
    --depth_;
    return valueEnded(position_ + 1);
  }

  bool key(std::string_view name) override {
    if (depth_ != 1) return true;
    if (!isJsonKey(name)) return false;
    members_.push_back({std::string(name), {}});
    valueBegin_ = position_;
    return keys_.insert(members_.back().key).second;
  }

  [[nodiscard]] std::vector<JsonMember> take() { return std::move(members_); }

 private:
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
  const std::size_t& position_;
  std::vector<JsonMember> members_;
  std::set<std::string> keys_;
  std::size_t valueBegin_ = 0;
  int depth_ = 0;
};

/// What `text` says, when it is of that type; passed to `copied`, since it does not last.
template <class Type, class Copied>
auto valueOf(std::string_view text, Copied copied) -> decltype(copied(std::declval<Type>())) {
  const ByteView view = bytesOf(text);
  Bytes bytes(view.begin(), view.end());
  const auto value = JsonValue::readWithin(bytes);
  const auto* const content = value ? value->as<Type>() : nullptr;
  if (content == nullptr) return std::nullopt;
  return copied(*content);
}

std::optional<std::string> written(bool value) { return value ? "true" : "false"; }
std::optional<std::string> written(std::int64_t value) { return std::to_string(value); }
std::optional<std::string> written(double value) {
  if (!std::isfinite(value)) return std::nullopt;
  JsonWriter json;
  json.real(value);
  return std::string(json.view());
}
std::optional<std::string> written(const std::string& value) {
  if (!isValidUtf8(value)) return std::nullopt;
  JsonWriter json;
  json.text(value);
  return std::string(json.view());
}
std::optional<std::string> written(Date value) {
  if (!fitsIso8601(value)) return std::nullopt;
  return written(iso8601(value, DateFraction::kept));
}
std::optional<std::string> written(const std::vector<std::string>& values) {
  std::string result;
  for (const std::string& value : values) {
    const auto text = written(value);
    if (!text) return std::nullopt;
    result += (result.empty() ? "" : ",") + *text;
  }
  return '[' + result + ']';
}

}  // namespace

std::optional<std::vector<JsonMember>> parseJsonObject(std::string_view text) {
  std::size_t position = 0;
  MemberCollector collector(text, position);
  if (!readJsonInPieces(text, position, collector)) return std::nullopt;
  return collector.take();
}

std::string jsonObjectText(const std::vector<JsonMember>& members) {
  std::string result = "{";
  const char* separator = "\n  ";
  for (const JsonMember& member : members) {
    result += separator;
    result += written(member.key).value_or("\"\"");
    result += ": ";
    result += member.text;
    separator = ",\n  ";
  }
  result += "\n}\n";
  return result;
}

std::optional<std::string> jsonText(const DefaultsValue& value) {
  return std::visit([](const auto& each) { return written(each); }, value);
}

bool isJsonKey(std::string_view key) { return isValidUtf8(key); }

std::optional<bool> jsonBoolean(const std::string& text) {
  return valueOf<bool>(text, [](bool value) { return std::optional(value); });
}

std::optional<std::int64_t> jsonInteger(const std::string& text) {
  return valueOf<std::int64_t>(text, [](std::int64_t value) { return std::optional(value); });
}

std::optional<std::string> jsonString(const std::string& text) {
  return valueOf<std::string_view>(
      text, [](std::string_view value) { return std::optional(std::string(value)); });
}

std::optional<std::vector<std::string>> jsonStringArray(const std::string& text) {
  return valueOf<JsonValue::Array>(
      text, [](const JsonValue::Array& elements) -> std::optional<std::vector<std::string>> {
        std::vector<std::string> result;
        for (const JsonValue& element : elements) {
          const auto* const string = element.as<std::string_view>();
          if (string == nullptr) return std::nullopt;
          result.emplace_back(*string);
        }
        return result;
      });
}

}  // namespace vantorel
