// SPDX-License-Identifier: MIT
#pragma once

#include <rapidjson/reader.h>

#include <bitset>
#include <optional>
#include <string_view>
#include <vector>

#include "store/ClipItem.h"
#include "store/HistoryFields.h"

namespace vantorel {

/// Receives the events of a JSON parser and builds entries from them. Every event answers whether
/// to go on: false as soon as the input is no history.
class HistoryReader {
 public:
  /// Unknown keys may hold anything; nothing real is nested deeper.
  static constexpr int maximumSkippedDepth = 64;

  /// The entries, once the parser has reached the end without a refusal.
  [[nodiscard]] std::vector<ClipItem> takeItems() { return std::move(items_); }

  // The parser's side, named as RapidJSON calls them.
  bool Null();
  bool Bool(bool value);
  bool Int(int value) { return number(value); }
  bool Uint(unsigned value) { return number(value); }
  bool Int64(std::int64_t value) { return number(value); }
  bool Uint64(std::uint64_t value);
  bool Double(double value);
  bool RawNumber(const char* text, rapidjson::SizeType length, bool copy);
  bool String(const char* text, rapidjson::SizeType length, bool copy);
  bool StartObject();
  bool Key(const char* text, rapidjson::SizeType length, bool copy);
  bool EndObject(rapidjson::SizeType members);
  bool StartArray();
  bool EndArray(rapidjson::SizeType elements);

 private:
  enum class State {
    root,     // before the history's array
    entries,  // in it, between entries
    keys,     // in an entry, before a key or its end
    value,    // after the key of `field_`
    paths,    // in the array of file paths
    skipping  // in the value of an unknown key, `skippedDepth_` containers deep
  };

  bool number(std::int64_t value);
  bool string(std::string_view text);
  bool scalarWhileSkipping();
  bool containerWhileSkipping();
  bool containerEndWhileSkipping();
  template <class Set>
  bool setField(Set set);

  std::vector<ClipItem> items_;
  ClipItem item_;
  std::vector<std::string> paths_;             // in the array under way
  std::bitset<historyFields.size()> present_;  // of the entry under way: what had a value
  State state_ = State::root;
  std::size_t field_ = 0;  // its place in `historyFields`
  int skippedDepth_ = 0;
};

}  // namespace vantorel
