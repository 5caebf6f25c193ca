#include "platform/linux/x11/X11SyntheticInput.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vantorel {

namespace {

bool isModifier(KeyCode keyCode) {
  constexpr std::array<KeyCode, 9> modifiers = {54, 55, 56, 57, 58, 59, 60, 61, 62};
  return std::find(modifiers.begin(), modifiers.end(), keyCode) != modifiers.end();
}

}  // namespace

std::unique_ptr<X11SyntheticInput> X11SyntheticInput::open(const DesktopEntries& entries,
                                                           PrimaryOffer offerPrimary,
                                                           const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) return nullptr;
  return std::unique_ptr<X11SyntheticInput>(
      new X11SyntheticInput(std::move(connection), entries, std::move(offerPrimary)));
}

X11SyntheticInput::X11SyntheticInput(std::unique_ptr<X11Connection> connection,
                                     const DesktopEntries& entries, PrimaryOffer offerPrimary)
    : presser_(std::move(connection), entries, std::move(offerPrimary)) {}

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

void X11SyntheticInput::post(const SyntheticKeyEvent& event, ProcessId pid) {
  if (event.direction == KeyDirection::up || isModifier(event.keyCode)) return;
  presser_.press({event.keyCode, event.flags}, pid);
}

}  // namespace vantorel
