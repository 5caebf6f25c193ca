// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "platform/EventMonitors.h"

namespace vantorel {

/// A pointer that the test presses outside this program's windows.
class FakeEventMonitors : public EventMonitors {
 public:
  [[nodiscard]] std::unique_ptr<Observation> addGlobalMouseDownMonitor(
      std::function<void()> handler) override {
    if (!available_) return nullptr;
    auto shared = std::make_shared<std::function<void()>>(std::move(handler));
    handlers_.push_back(shared);
    return std::make_unique<Monitor>(std::move(shared));
  }

  // The test's side.

  /// Runs every living monitor's handler, now.
  void pressMouse() {
    const auto handlers = handlers_;  // a handler may add or end monitors
    for (const auto& handler : handlers) {
      if (const auto living = handler.lock()) (*living)();
    }
  }
  void setAvailable(bool available) { available_ = available; }
  [[nodiscard]] std::size_t monitorCount() const {
    return static_cast<std::size_t>(
        std::count_if(handlers_.begin(), handlers_.end(),
                      [](const auto& handler) { return !handler.expired(); }));
  }

 private:
  class Monitor : public Observation {
   public:
    explicit Monitor(std::shared_ptr<std::function<void()>> handler)
        : handler_(std::move(handler)) {}

   private:
    std::shared_ptr<std::function<void()>> handler_;
  };

  std::vector<std::weak_ptr<std::function<void()>>> handlers_;
  bool available_ = true;
};

}  // namespace vantorel
