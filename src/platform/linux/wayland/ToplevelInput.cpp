// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/ToplevelInput.h"

#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/windows/KeyCodeTable.h"

namespace vantorel {

ToplevelInput::ToplevelInput(Services services, std::unique_ptr<ChordKeyboard> keyboard)
    : services_(std::move(services)),
      keyboard_(std::move(keyboard)),
      presser_({services_.windows, *keyboard_, services_.entries, services_.offerPrimary}) {}

ToplevelInput::~ToplevelInput() = default;

bool ToplevelInput::isTrusted(TrustPrompt /*prompt*/) { return keyboard_->isAvailable(); }

std::optional<EventSource> ToplevelInput::createEventSource() {
  if (!keyboard_->isAvailable()) return std::nullopt;
  return EventSource{};
}

std::optional<SyntheticKeyEvent> ToplevelInput::createKeyboardEvent(const EventSource& /*source*/,
                                                                    KeyCode keyCode,
                                                                    KeyDirection direction) {
  if (!x11KeyCode(keyCode)) return std::nullopt;
  return SyntheticKeyEvent{keyCode, direction, 0};
}

void ToplevelInput::post(const SyntheticKeyEvent& event, const RunningApplication& target,
                         std::function<void(KeyDelivery)> done) {
  auto answer = onMainQueue(services_.dispatch, life_.guard([done = std::move(done)](bool pressed) {
    done(pressed ? KeyDelivery::delivered : KeyDelivery::failed);
  }));
  if (event.direction == KeyDirection::up || isModifierKey(event.keyCode)) {
    answer(true);  // a part of the chord whose key has its own answer
    return;
  }
  giveUpWaiting();
  waiting_ = Waiting{.event = event, .target = target, .answer = std::move(answer)};
  look();
}

void ToplevelInput::look() {
  if (services_.isKeyboardElsewhere()) {
    const auto ready = std::exchange(waiting_, std::nullopt);
    presser_.press(ready->event, ready->target, ready->answer);
  } else if (waiting_->checksLeft-- > 0) {
    nextLook_ = services_.dispatch.after(keyboardCheckInterval, [this] { look(); });
  } else {
    giveUpWaiting();
  }
}

void ToplevelInput::giveUpWaiting() {
  nextLook_.reset();
  if (const auto waited = std::exchange(waiting_, std::nullopt)) waited->answer(false);
}

void ToplevelInput::withdraw() {
  giveUpWaiting();
  presser_.withdraw();
}

}  // namespace vantorel
