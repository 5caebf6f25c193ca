// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/Observation.h"

namespace vantorel {

/// Whom to tell when something happens, with what they are told. Main thread.
template <class... News>
class Observers {
 public:
  using Handler = std::function<void(News...)>;

  /// `handler` is told until the result is destroyed, which may outlive this.
  [[nodiscard]] std::unique_ptr<Observation> add(Handler handler) {
    std::erase_if(handlers_, [](const auto& each) { return each.expired(); });
    auto registration = std::make_unique<Registration>();
    registration->handler = std::make_shared<Handler>(std::move(handler));
    handlers_.push_back(registration->handler);
    return registration;
  }

  /// Tells everyone, in the order added. A handler may add and end any observation, its own too;
  /// one that is ended meanwhile is not told any more.
  void notify(News... news) {
    const auto told = handlers_;  // what is added meanwhile is not told of this
    for (const auto& each : told) {
      if (const auto handler = each.lock()) (*handler)(news...);
    }
  }

 private:
  struct Registration : Observation {
    std::shared_ptr<Handler> handler;
  };

  std::vector<std::weak_ptr<Handler>> handlers_;
};

using ChangeObservers = Observers<>;

}  // namespace vantorel
