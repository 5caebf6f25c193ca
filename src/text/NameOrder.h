// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>

namespace vantorel {

/// The order in which a reader of the user's locale expects names, whatever their case. One
/// instance serves one thread.
class NameOrder {
 public:
  NameOrder();
  ~NameOrder();
  NameOrder(const NameOrder&) = delete;
  NameOrder& operator=(const NameOrder&) = delete;

  /// Whether `a` stands before `b`; false both ways for names that differ in case alone.
  [[nodiscard]] bool operator()(std::string_view a, std::string_view b) const;

 private:
  struct Rules;
  std::unique_ptr<Rules> rules_;
};

}  // namespace vantorel
