// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "platform/Dispatch.h"

namespace vantorel {

/// `function` for callers on any thread: it is called with what they give, later, on the main
/// thread, in the order of their calls. `dispatch` outlives the result. What the function belongs
/// to may be gone by then: pass it through a `Lifetime` first, on the main thread.
template <class Function>
[[nodiscard]] auto onMainQueue(Dispatch& dispatch, Function function) {
  return [&dispatch, function = std::move(function)](auto... arguments) {
    dispatch.async([function, ... arguments = std::move(arguments)]() mutable {
      function(std::move(arguments)...);
    });
  };
}

}  // namespace vantorel
