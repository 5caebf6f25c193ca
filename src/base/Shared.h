// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "base/Bytes.h"
#include "base/WipedText.h"

namespace vantorel {

/// An immutable value that is cheap to copy and may be read on any thread: a history entry is
/// handed around as a value, its megabytes are not. A text, or bytes, are overwritten when the last
/// holder lets go, on its thread.
template <class T>
class Shared {
 public:
  Shared(T value) : value_(kept(std::move(value))) {}  // NOLINT: a value is a value

  [[nodiscard]] const T& get() const { return *value_; }
  const T& operator*() const { return *value_; }
  const T* operator->() const { return value_.get(); }
  /// Whether both are the very same object, which is cheaper than being equal.
  [[nodiscard]] bool sharesWith(const Shared& other) const { return value_ == other.value_; }

  friend bool operator==(const Shared& a, const Shared& b) {
    return a.value_ == b.value_ || *a.value_ == *b.value_;
  }

 private:
  struct Held {
    explicit Held(T of) : value(std::move(of)) {}
    ~Held() {
      if constexpr (requires { wipe(value); }) wipe(value);
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    T value;
  };

  static std::shared_ptr<const T> kept(T value) {
    auto held = std::make_shared<Held>(std::move(value));
    const T* const place = &held->value;
    return {std::move(held), place};
  }

  std::shared_ptr<const T> value_;
};

using SharedText = Shared<std::string>;
using SharedBytes = Shared<Bytes>;

}  // namespace vantorel
