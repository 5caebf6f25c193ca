// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace vantorel {

/// Makes callbacks that do nothing once their owner is gone. A member of the owner, declared last
/// so that it ends first. What leaves the owner goes through `guard` (what is delayed or queued,
/// and what somebody keeps who may live longer); what its own members call needs none. Guarded
/// callbacks are made and called on the owner's thread; they may travel through others.
/// One that touches nothing of its owner may be called on any thread: the owner may end meanwhile.
class Lifetime {
 public:
  Lifetime() = default;
  Lifetime(const Lifetime&) = delete;
  Lifetime& operator=(const Lifetime&) = delete;

  /// `function`, called only while this lives; afterwards it answers an empty value, if any.
  template <class Function>
  [[nodiscard]] auto guard(Function function) const {
    return [alive = std::weak_ptr<const Token>(token_),
            function = std::move(function)](auto&&... arguments) {
      using Answer = std::invoke_result_t<const Function&, decltype(arguments)...>;
      if constexpr (std::is_void_v<Answer>) {
        if (!alive.expired()) function(std::forward<decltype(arguments)>(arguments)...);
      } else {
        return alive.expired() ? Answer()
                               : function(std::forward<decltype(arguments)>(arguments)...);
      }
    };
  }

  /// Disarms every callback that was guarded so far.
  void end() { token_ = std::make_shared<const Token>(); }

 private:
  struct Token {};
  std::shared_ptr<const Token> token_ = std::make_shared<const Token>();
};

}  // namespace vantorel
