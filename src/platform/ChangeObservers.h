#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/Observation.h"

namespace vantorel {

/// Whom to tell that something has changed. Main thread.
class ChangeObservers {
 public:
  using Handler = std::function<void()>;

  /// `handler` is told until the result is destroyed, which may outlive this.
  [[nodiscard]] std::unique_ptr<Observation> add(Handler handler);

  /// Tells everyone, in the order added. A handler may add and end any observation, its own too;
  /// one that is ended meanwhile is not told any more.
  void notify();

 private:
  class Registration;

  std::vector<std::weak_ptr<Handler>> handlers_;
};

}  // namespace vantorel
