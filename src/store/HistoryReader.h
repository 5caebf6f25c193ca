// SPDX-License-Identifier: MIT
#pragma once

#include <bitset>
#include <optional>
#include <string_view>
#include <vector>

#include "base/JsonEvents.h"
#include "store/ClipItem.h"
#include "store/HistoryFields.h"

namespace vantorel {

/// Builds entries from what a JSON text says; ends the reading as soon as that is no history.
class HistoryReader : public JsonEvents {
 public:
  /// Unknown keys may hold anything; nothing real is nested deeper.
  static constexpr int maximumSkippedDepth = 64;

  /// The entries, once the whole was read.
  [[nodiscard]] std::vector<ClipItem> takeItems() { return std::move(items_); }

  bool null() override;
  bool boolean(bool value) override;
  bool integer(std::int64_t value) override;
  bool real(double value) override;
  bool text(std::string_view text) override;
  bool beginObject() override;
  bool key(std::string_view name) override;
  bool endObject() override;
  bool beginArray() override;
  bool endArray() override;

 private:
  enum class State {
    root,     // before the history's array
    entries,  // in it, between entries
    keys,     // in an entry, before a key or its end
    value,    // after the key of `field_`
    paths,    // in the array of file paths
    skipping  // in the value of an unknown key, `skippedDepth_` containers deep
  };

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
