// SPDX-License-Identifier: MIT
#include "base/JsonValue.h"

#include <gtest/gtest.h>

#include <string>

#include "base/Bytes.h"

namespace vantorel {
namespace {

/// A text and what was read within it.
struct Read {
  explicit Read(std::string text)
      : bytes(bytesOf(text).begin(), bytesOf(text).end()), value(JsonValue::readWithin(bytes)) {}
  Bytes bytes;
  std::optional<JsonValue> value;
};

template <class Type>
Type valueIn(const char* text) {
  const Read read(text);
  const auto* const found = read.value ? read.value->as<Type>() : nullptr;
  EXPECT_NE(found, nullptr) << text;
  return found == nullptr ? Type() : *found;
}

TEST(JsonValue, KnowsEachType) {
  EXPECT_EQ(valueIn<std::nullptr_t>("null"), nullptr);
  EXPECT_TRUE(valueIn<bool>("true"));
  EXPECT_EQ(valueIn<std::int64_t>("-9223372036854775808"), INT64_MIN);
  EXPECT_EQ(valueIn<double>("5.0"), 5.0);
  EXPECT_EQ(valueIn<double>("9223372036854775808"), 9223372036854775808.0);
  EXPECT_EQ(valueIn<JsonValue::Array>("[1, [2]]").size(), 2U);
  const Read text(" \"a\\u00e9\\n\" ");
  EXPECT_EQ(*text.value->as<std::string_view>(), "a\u00e9\n");
}

TEST(JsonValue, FindsTheFirstMemberOfAName) {
  const Read read(R"({"a": {"x": 1, "y": [true]}, "b": 2, "a": 3})");
  const JsonValue* const a = read.value->member("a");
  ASSERT_NE(a, nullptr);
  ASSERT_NE(a->member("y"), nullptr);
  EXPECT_EQ(*a->member("x")->as<std::int64_t>(), 1);
  EXPECT_EQ(*read.value->member("b")->as<std::int64_t>(), 2);
  EXPECT_EQ(read.value->member("c"), nullptr);
  EXPECT_EQ(read.value->member("b")->member("a"), nullptr);
}

TEST(JsonValue, IsOneValueAndNothingElse) {
  for (const std::string& text :
       {std::string(), std::string("1 2"), std::string("1\0", 2), std::string("[1"),
        std::string("{\"a\" 1}"), std::string("\"\xff\""), std::string("{'a': 1}")}) {
    EXPECT_FALSE(Read(text).value) << text;
  }
}

TEST(JsonValue, NestsAsDeepAsTheLimitSays) {
  const auto nested = [](int depth) {
    const auto count = static_cast<std::size_t>(depth);
    return std::string(count, '[') + std::string(count, ']');
  };
  EXPECT_TRUE(Read(nested(JsonValue::maximumDepth)).value);
  EXPECT_FALSE(Read(nested(JsonValue::maximumDepth + 1)).value);
}

TEST(JsonValue, HoldsAsManyValuesAsTheLimitSays) {
  const auto array = [](std::size_t count) {
    std::string text(2 * count + 1, ',');
    for (std::size_t i = 1; i < text.size(); i += 2) text[i] = '0';
    text.front() = '[';
    text.back() = ']';
    return text;
  };
  EXPECT_TRUE(Read(array(JsonValue::maximumCount - 1)).value);  // and the array itself
  EXPECT_FALSE(Read(array(JsonValue::maximumCount)).value);
}

}  // namespace
}  // namespace vantorel
