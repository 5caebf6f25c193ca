// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/SyntheticInput.h"
#include "platform/linux/wayland/ToplevelPresser.h"

namespace vantorel {

/// Keys for the windows that a compositor tells of, by a keyboard of this program's. A key event
/// that goes down stands for the whole press; the modifier keys and releases around it need nothing
/// more.
class ToplevelInput : public SyntheticInput {
 public:
  struct Services {
    Dispatch& dispatch;
    ToplevelSource& windows;
    const DesktopEntries& entries;
    std::function<bool()> offerPrimary;  // as `ToplevelPresser` wants it
    /// Whether the compositor has taken the keyboard from this program's windows. One that has it
    /// on a layer above the others leaves the window below in front, as some compositors see it;
    /// a chord pressed then would come back here. Main thread.
    std::function<bool()> isKeyboardElsewhere;
  };
  /// How long it may take until the keyboard is elsewhere, and how often that is looked at.
  static constexpr int keyboardChecks = 120;
  static constexpr Seconds keyboardCheckInterval{0.005};

  /// What `services` name outlives this; `keyboard` is not null.
  ToplevelInput(Services services, std::unique_ptr<ChordKeyboard> keyboard);
  ~ToplevelInput() override;

  [[nodiscard]] bool isTrusted(TrustPrompt prompt) override;
  [[nodiscard]] std::optional<EventSource> createEventSource() override;
  [[nodiscard]] std::optional<SyntheticKeyEvent> createKeyboardEvent(
      const EventSource& source, KeyCode keyCode, KeyDirection direction) override;
  void post(const SyntheticKeyEvent& event, const RunningApplication& target,
            std::function<void(KeyDelivery)> done) override;
  void withdraw() override;

 private:
  struct Waiting {
    SyntheticKeyEvent event;
    RunningApplication target;
    std::function<void(bool pressed)> answer;
    int checksLeft = keyboardChecks;
  };
  void look();
  void giveUpWaiting();

  Services services_;
  std::unique_ptr<ChordKeyboard> keyboard_;
  std::optional<Waiting> waiting_;  // for the keyboard to be elsewhere
  std::unique_ptr<Timer> nextLook_;
  ToplevelPresser presser_;  // behind the keyboard that it presses on
  Lifetime life_;
};

}  // namespace vantorel
