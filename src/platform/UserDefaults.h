// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/Date.h"

namespace vantorel {

using DefaultsValue =
    std::variant<bool, std::int64_t, double, std::string, Date, std::vector<std::string>>;

/// The user's settings under dotted keys. Main thread. A getter answers absent when nothing is
/// stored under the key or something of another type is. Written through at once; a write that
/// fails leaves the stored settings whole, and the value holds for this run.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  /// There were settings, and nobody knows what they were; until the first one is set.
  [[nodiscard]] virtual bool areLost() const = 0;

  [[nodiscard]] virtual bool contains(std::string_view key) const = 0;
  [[nodiscard]] virtual std::optional<bool> boolean(std::string_view key) const = 0;
  [[nodiscard]] virtual std::optional<std::int64_t> integer(std::string_view key) const = 0;
  [[nodiscard]] virtual std::optional<std::string> string(std::string_view key) const = 0;
  [[nodiscard]] virtual std::optional<Date> date(std::string_view key) const = 0;
  [[nodiscard]] virtual std::optional<std::vector<std::string>> stringArray(
      std::string_view key) const = 0;

  virtual void set(std::string_view key, DefaultsValue value) = 0;
  virtual void remove(std::string_view key) = 0;
};

}  // namespace vantorel
