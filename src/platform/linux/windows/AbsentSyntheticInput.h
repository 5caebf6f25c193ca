// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "platform/SyntheticInput.h"

namespace vantorel {

/// Where no program may press keys for another one. Main thread.
class AbsentSyntheticInput : public SyntheticInput {
 public:
  [[nodiscard]] bool isTrusted(TrustPrompt /*prompt*/) override { return false; }
  [[nodiscard]] std::optional<EventSource> createEventSource() override { return std::nullopt; }
  [[nodiscard]] std::optional<SyntheticKeyEvent> createKeyboardEvent(
      const EventSource& /*source*/, KeyCode /*keyCode*/, KeyDirection /*direction*/) override {
    return std::nullopt;
  }
  void post(const SyntheticKeyEvent& /*event*/, const RunningApplication& /*target*/,
            std::function<void(KeyDelivery)> done) override {
    done(KeyDelivery::failed);
  }
  void withdraw() override {}
};

}  // namespace vantorel
