// SPDX-License-Identifier: MIT
#include "store/HistoryReader.h"

#include <algorithm>
#include <type_traits>
#include <utility>

#include "base/Base64.h"
#include "base/Iso8601.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

template <class T>
constexpr bool isOptional = false;
template <class T>
constexpr bool isOptional<std::optional<T>> = true;

/// What a JSON string says of a value of that kind; absent when it says nothing.
template <class Value>
std::optional<Value> valueIn(std::string_view text) {
  if constexpr (std::is_same_v<Value, std::string> || std::is_same_v<Value, SharedText>) {
    return std::string(text);
  } else if constexpr (std::is_same_v<Value, SharedBytes>) {
    return bytesFromBase64(text);
  } else if constexpr (std::is_same_v<Value, Date>) {
    return dateFromIso8601(text);
  } else if constexpr (std::is_same_v<Value, Uuid>) {
    return Uuid::parse(text);
  } else if constexpr (std::is_same_v<Value, ClipKind>) {
    return clipKind(text);
  } else {
    return std::nullopt;
  }
}

template <class Value>
bool setFromText(Value& to, std::string_view text) {
  auto value = valueIn<Value>(text);
  if (!value) return false;
  to = std::move(*value);
  return true;
}

template <class Value>
bool setFromText(std::optional<Value>& to, std::string_view text) {
  to = valueIn<Value>(text);
  return to.has_value();
}

/// True when the place is one for exactly such values.
template <class Value>
bool setExactly(auto& to, Value value) {
  if constexpr (std::is_same_v<decltype(to), std::optional<Value>&>) to = value;
  return std::is_same_v<decltype(to), std::optional<Value>&>;
}

}  // namespace

/// Passes the place of the value that is expected to `set`, which answers whether it could be set.
template <class Set>
bool HistoryReader::setField(Set set) {
  if (state_ == State::skipping) return scalarWhileSkipping();
  if (state_ != State::value) return false;
  const bool isSet =
      std::visit([&](auto place) { return set(item_.*place); }, historyFields[field_].member);
  if (isSet) present_.set(field_);
  state_ = State::keys;
  return isSet;
}

bool HistoryReader::scalarWhileSkipping() {
  if (skippedDepth_ == 0) state_ = State::keys;
  return true;
}

bool HistoryReader::containerWhileSkipping() { return ++skippedDepth_ <= maximumSkippedDepth; }

bool HistoryReader::containerEndWhileSkipping() {
  if (--skippedDepth_ == 0) state_ = State::keys;
  return true;
}

bool HistoryReader::null() {
  return setField([](auto& value) {
    if constexpr (isOptional<std::remove_reference_t<decltype(value)>>) {
      value.reset();
      return true;
    }
    return false;
  });
}

bool HistoryReader::boolean(bool value) {
  return setField([value](auto& place) { return setExactly(place, value); });
}

bool HistoryReader::integer(std::int64_t value) {
  return setField([value](auto& place) { return setExactly(place, value); });
}

bool HistoryReader::real(double value) {
  if (state_ == State::skipping) return scalarWhileSkipping();
  // 2^63: whole numbers that do not fit come as it, or its negative, too.
  constexpr double limit = 9223372036854775808.0;
  if (!(value > -limit && value < limit)) return false;
  const auto whole = static_cast<std::int64_t>(value);
  return static_cast<double>(whole) == value && integer(whole);
}

bool HistoryReader::text(std::string_view text) {
  if (!isValidUtf8(text)) return false;
  if (state_ != State::paths) {
    return setField([text](auto& place) { return setFromText(place, text); });
  }
  paths_.emplace_back(text);
  return true;
}

bool HistoryReader::beginObject() {
  if (state_ == State::skipping) return containerWhileSkipping();
  if (state_ != State::entries) return false;
  item_ = ClipItem();
  present_.reset();
  state_ = State::keys;
  return true;
}

bool HistoryReader::key(std::string_view name) {
  if (!isValidUtf8(name)) return false;
  if (state_ == State::skipping) return true;
  const auto* const field =
      std::find_if(historyFields.begin(), historyFields.end(),
                   [name](const HistoryField& each) { return each.key == name; });
  field_ = static_cast<std::size_t>(field - historyFields.begin());
  state_ = field_ < historyFields.size() ? State::value : State::skipping;
  skippedDepth_ = 0;
  return true;
}

bool HistoryReader::endObject() {
  if (state_ == State::skipping) return containerEndWhileSkipping();
  for (std::size_t i = 0; i < historyFields.size(); ++i) {
    const bool isRequired = std::visit(
        [this](auto place) { return !isOptional<std::remove_reference_t<decltype(item_.*place)>>; },
        historyFields[i].member);
    if (isRequired && !present_.test(i)) return false;
  }
  items_.push_back(std::move(item_));
  state_ = State::entries;
  return true;
}

bool HistoryReader::beginArray() {
  if (state_ == State::skipping) return containerWhileSkipping();
  if (state_ == State::root) {
    state_ = State::entries;
    return true;
  }
  const bool isList =
      setField([](auto& place) { return std::is_same_v<decltype(place), FilePaths&>; });
  if (isList) state_ = State::paths;
  return isList;
}

bool HistoryReader::endArray() {
  if (state_ == State::skipping) return containerEndWhileSkipping();
  if (state_ == State::paths) item_.filePaths = std::exchange(paths_, {});
  state_ = state_ == State::paths ? State::keys : State::root;
  return true;
}

}  // namespace vantorel
