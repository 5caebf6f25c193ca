// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/SyntheticInput.h"
#include "platform/linux/x11/X11ChordPresser.h"

namespace vantorel {

/// Keys pressed through the XTEST extension: they are real to every program, so they are pressed
/// only while the target has the keyboard. A key event that goes down stands for the whole press:
/// the chord that its flags make is pressed and let go at once, on the applications' thread, and
/// the modifier keys and releases around it need nothing more. So no modifier is ever left down.
class X11SyntheticInput : public SyntheticInput {
 public:
  /// `dispatch` and `applications` outlive this.
  X11SyntheticInput(Dispatch& dispatch, X11Applications& applications, PrimaryOffer offerPrimary,
                    ListedTo isListedTo = {});
  ~X11SyntheticInput() override;

  [[nodiscard]] bool isTrusted(TrustPrompt prompt) override;
  [[nodiscard]] std::optional<EventSource> createEventSource() override;
  [[nodiscard]] std::optional<SyntheticKeyEvent> createKeyboardEvent(
      const EventSource& source, KeyCode keyCode, KeyDirection direction) override;
  void post(const SyntheticKeyEvent& event, const RunningApplication& target,
            std::function<void(KeyDelivery)> done) override;
  void withdraw() override { presser_.withdraw(); }

 private:
  Dispatch& dispatch_;
  X11ChordPresser presser_;
  Lifetime life_;
};

}  // namespace vantorel
