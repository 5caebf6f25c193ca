// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <utility>

#include "platform/UserDefaults.h"

namespace vantorel {

/// Settings in memory alone; `set` and `contains` serve the test as they serve the program.
class FakeUserDefaults : public UserDefaults {
 public:
  [[nodiscard]] bool areLost() const override { return areLost_; }
  [[nodiscard]] bool contains(std::string_view key) const override {
    return values_.find(key) != values_.end();
  }
  [[nodiscard]] std::optional<bool> boolean(std::string_view key) const override {
    return value<bool>(key);
  }
  [[nodiscard]] std::optional<std::int64_t> integer(std::string_view key) const override {
    return value<std::int64_t>(key);
  }
  [[nodiscard]] std::optional<std::string> string(std::string_view key) const override {
    return value<std::string>(key);
  }
  [[nodiscard]] std::optional<Date> date(std::string_view key) const override {
    return value<Date>(key);
  }
  [[nodiscard]] std::optional<std::vector<std::string>> stringArray(
      std::string_view key) const override {
    return value<std::vector<std::string>>(key);
  }
  void set(std::string_view key, DefaultsValue value) override {
    areLost_ = false;
    values_.insert_or_assign(std::string(key), std::move(value));
  }
  void remove(std::string_view key) override {
    const auto found = values_.find(key);
    if (found != values_.end()) values_.erase(found);
  }

  // The test's side.

  void lose() {
    values_.clear();
    areLost_ = true;
  }

  // The test's side.

  [[nodiscard]] const std::map<std::string, DefaultsValue, std::less<>>& values() const {
    return values_;
  }

 private:
  template <class T>
  [[nodiscard]] std::optional<T> value(std::string_view key) const {
    const auto found = values_.find(key);
    if (found == values_.end()) return std::nullopt;
    const auto* held = std::get_if<T>(&found->second);
    return held ? std::optional<T>(*held) : std::nullopt;
  }

  std::map<std::string, DefaultsValue, std::less<>> values_;
  bool areLost_ = false;
};

}  // namespace vantorel
