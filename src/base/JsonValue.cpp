// SPDX-License-Identifier: MIT
#include "base/JsonValue.h"

#include <algorithm>

#include "base/JsonReader.h"

namespace vantorel {
namespace {

/// Puts values into the containers around them.
class Builder : public JsonEvents {
 public:
  bool null() override { return add(JsonValue()); }
  bool boolean(bool value) override { return add(JsonValue(value)); }
  bool integer(std::int64_t value) override { return add(JsonValue(value)); }
  bool real(double value) override { return add(JsonValue(value)); }
  bool text(std::string_view text) override { return add(JsonValue(text)); }
  bool beginObject() override { return open(JsonValue::Object()); }
  bool key(std::string_view name) override {
    open_.back().key = name;
    return true;
  }
  bool endObject() override { return close(); }
  bool beginArray() override { return open(JsonValue::Array()); }
  bool endArray() override { return close(); }

  [[nodiscard]] JsonValue take() { return std::move(root_); }

 private:
  /// A container whose end has not come.
  struct Open {
    JsonValue::Content content;
    std::string_view key;  // of the next value, in an object
  };

  bool open(JsonValue::Content container) {
    open_.push_back({.content = std::move(container), .key = {}});
    return open_.size() <= JsonValue::maximumDepth;
  }

  bool close() {
    JsonValue whole(std::move(open_.back().content));
    open_.pop_back();
    return add(std::move(whole));
  }

  bool add(JsonValue value) {
    if (open_.empty()) {
      root_ = std::move(value);
    } else if (auto* const array = std::get_if<JsonValue::Array>(&open_.back().content)) {
      array->push_back(std::move(value));
    } else {
      auto& object = std::get<JsonValue::Object>(open_.back().content);
      object.emplace_back(open_.back().key, std::move(value));
    }
    return ++count_ <= JsonValue::maximumCount;
  }

  std::vector<Open> open_;
  JsonValue root_;
  std::size_t count_ = 0;
};

}  // namespace

std::optional<JsonValue> JsonValue::readWithin(std::span<std::byte> text) {
  Builder builder;
  if (!readJsonWithin(text, JsonEncoding::checked, builder)) return std::nullopt;
  return builder.take();
}

const JsonValue* JsonValue::member(std::string_view key) const {
  const auto* const object = as<Object>();
  if (object == nullptr) return nullptr;
  const auto found = std::find_if(object->begin(), object->end(),
                                  [key](const auto& each) { return each.first == key; });
  return found == object->end() ? nullptr : &found->second;
}

}  // namespace vantorel
