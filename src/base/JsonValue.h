// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vantorel {

/// A value of JSON, with all that is in it. Its texts and keys stand in the memory that it was read
/// from, which outlives it.
class JsonValue {
 public:
  using Array = std::vector<JsonValue>;
  using Object = std::vector<std::pair<std::string_view, JsonValue>>;
  using Content =
      std::variant<std::nullptr_t, bool, std::int64_t, double, std::string_view, Array, Object>;

  static constexpr int maximumDepth = 64;
  static constexpr std::size_t maximumCount = 500'000;  // of values, for some 30 MB

  JsonValue() = default;
  explicit JsonValue(Content content) : content_(std::move(content)) {}

  /// Unescapes within `text`. Absent when it is not one JSON value in UTF-8, or is nested deeper or
  /// holds more values than the limits say.
  [[nodiscard]] static std::optional<JsonValue> readWithin(std::span<std::byte> text);

  /// Null when it is of another type.
  template <class Type>
  [[nodiscard]] const Type* as() const {
    return std::get_if<Type>(&content_);
  }
  /// The first of that name; null when there is none, or this is no object.
  [[nodiscard]] const JsonValue* member(std::string_view key) const;

 private:
  Content content_;
};

}  // namespace vantorel
