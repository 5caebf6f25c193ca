// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/SyntheticInput.h"

namespace vantorel {

/// Keys where an X server stands inside of a compositor: those for windows of X11 programs are
/// pressed by one, those for all others by the other.
class CompositorInput : public SyntheticInput {
 public:
  /// Neither is null.
  CompositorInput(std::unique_ptr<SyntheticInput> toplevels, std::unique_ptr<SyntheticInput> x11);
  ~CompositorInput() override;

  [[nodiscard]] bool isTrusted(TrustPrompt prompt) override;
  [[nodiscard]] std::optional<EventSource> createEventSource() override;
  [[nodiscard]] std::optional<SyntheticKeyEvent> createKeyboardEvent(
      const EventSource& source, KeyCode keyCode, KeyDirection direction) override;
  void post(const SyntheticKeyEvent& event, const RunningApplication& target,
            std::function<void(KeyDelivery)> done) override;
  void withdraw() override;

 private:
  std::unique_ptr<SyntheticInput> toplevels_;
  std::unique_ptr<SyntheticInput> x11_;
};

}  // namespace vantorel
