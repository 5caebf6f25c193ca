// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/UserDefaults.h"

namespace vantorel {

/// One member of a JSON object. The value stays the text that it was, so that what nobody here
/// understands (numbers of any length, nested values) is written back exactly.
struct JsonMember {
  std::string key;   // UTF-8, unescaped
  std::string text;  // one JSON value
};

/// The members of the JSON object that `text` is, in their order. Absent when it is anything else:
/// not JSON, not an object, not UTF-8, a name given twice, something after the end, or deeper than
/// `maximumJsonDepth`. Never recurses.
[[nodiscard]] std::optional<std::vector<JsonMember>> parseJsonObject(std::string_view text);
inline constexpr int maximumJsonDepth = 64;

/// The object with these members, one on each line.
[[nodiscard]] std::string jsonObjectText(const std::vector<JsonMember>& members);

/// `value` as a JSON value; a date as its ISO 8601 text. Absent when JSON cannot say it: text that
/// is not UTF-8, a number that is not finite, a date outside the years 0 to 9999.
[[nodiscard]] std::optional<std::string> jsonText(const DefaultsValue& value);
/// Whether `key` can be the name of a member.
[[nodiscard]] bool isJsonKey(std::string_view key);

/// What one JSON value says, absent when it is of another type.
[[nodiscard]] std::optional<bool> jsonBoolean(const std::string& text);
[[nodiscard]] std::optional<std::int64_t> jsonInteger(const std::string& text);
[[nodiscard]] std::optional<std::string> jsonString(const std::string& text);
[[nodiscard]] std::optional<std::vector<std::string>> jsonStringArray(const std::string& text);

}  // namespace vantorel
