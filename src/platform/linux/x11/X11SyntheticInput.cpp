// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11SyntheticInput.h"

#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/windows/KeyCodeTable.h"

namespace vantorel {

X11SyntheticInput::X11SyntheticInput(Dispatch& dispatch, X11Applications& applications,
                                     PrimaryOffer offerPrimary, ListedTo isListedTo)
    : dispatch_(dispatch), presser_(applications, std::move(offerPrimary), std::move(isListedTo)) {}

X11SyntheticInput::~X11SyntheticInput() = default;

bool X11SyntheticInput::isTrusted(TrustPrompt /*prompt*/) { return presser_.isAvailable(); }

std::optional<EventSource> X11SyntheticInput::createEventSource() {
  if (!presser_.isAvailable()) return std::nullopt;
  return EventSource{};
}

std::optional<SyntheticKeyEvent> X11SyntheticInput::createKeyboardEvent(
    const EventSource& /*source*/, KeyCode keyCode, KeyDirection direction) {
  if (!x11KeyCode(keyCode)) return std::nullopt;
  return SyntheticKeyEvent{keyCode, direction, 0};
}

void X11SyntheticInput::post(const SyntheticKeyEvent& event, const RunningApplication& target,
                             std::function<void(KeyDelivery)> done) {
  const auto answer = onMainQueue(dispatch_, life_.guard([done = std::move(done)](bool pressed) {
    done(pressed ? KeyDelivery::delivered : KeyDelivery::failed);
  }));
  if (event.direction == KeyDirection::up || isModifierKey(event.keyCode)) {
    answer(true);  // a part of the chord whose key has its own answer
  } else {
    presser_.press({event.keyCode, event.flags}, target, answer);
  }
}

}  // namespace vantorel
