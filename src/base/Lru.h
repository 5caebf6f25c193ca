// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <list>
#include <unordered_map>
#include <utility>

namespace vantorel {

/// A map that knows which of its values was used longest ago, for a cache to drop.
template <class Key, class Value>
class Lru {
 public:
  /// The value, which counts as used now; null when there is none.
  [[nodiscard]] const Value* find(const Key& key) {
    const auto place = places_.find(key);
    if (place == places_.end()) return nullptr;
    entries_.splice(entries_.begin(), entries_, place->second);
    return &entries_.front().second;
  }

  /// False when the key has a value already, which stays.
  bool insert(const Key& key, Value value) {
    if (places_.contains(key)) return false;
    entries_.emplace_front(key, std::move(value));
    places_.emplace(key, entries_.begin());
    return true;
  }

  /// Takes out what was used longest ago; there must be something.
  Value takeOldest() {
    Value value = std::move(entries_.back().second);
    places_.erase(entries_.back().first);
    entries_.pop_back();
    return value;
  }

  [[nodiscard]] std::size_t size() const { return entries_.size(); }

  void clear() {
    places_.clear();
    entries_.clear();
  }

 private:
  using Entry = std::pair<Key, Value>;

  std::list<Entry> entries_;  // used last first
  std::unordered_map<Key, typename std::list<Entry>::iterator> places_;
};

}  // namespace vantorel
