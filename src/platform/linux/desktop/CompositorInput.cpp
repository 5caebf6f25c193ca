// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/CompositorInput.h"

#include <utility>

#include "platform/linux/wayland/ToplevelSource.h"

namespace vantorel {

CompositorInput::CompositorInput(std::unique_ptr<SyntheticInput> toplevels,
                                 std::unique_ptr<SyntheticInput> x11)
    : toplevels_(std::move(toplevels)), x11_(std::move(x11)) {}

CompositorInput::~CompositorInput() = default;

bool CompositorInput::isTrusted(TrustPrompt prompt) {
  return toplevels_->isTrusted(prompt) || x11_->isTrusted(prompt);
}

std::optional<EventSource> CompositorInput::createEventSource() {
  auto source = toplevels_->createEventSource();
  return source ? source : x11_->createEventSource();
}

// Keys are known by their places to both.
std::optional<SyntheticKeyEvent> CompositorInput::createKeyboardEvent(const EventSource& source,
                                                                      KeyCode keyCode,
                                                                      KeyDirection direction) {
  return toplevels_->createKeyboardEvent(source, keyCode, direction);
}

void CompositorInput::post(const SyntheticKeyEvent& event, const RunningApplication& target,
                           std::function<void(KeyDelivery)> done) {
  const bool isToplevel = target.window >= ToplevelSource::firstToken;
  (isToplevel ? toplevels_ : x11_)->post(event, target, std::move(done));
}

void CompositorInput::withdraw() {
  toplevels_->withdraw();
  x11_->withdraw();
}

}  // namespace vantorel
