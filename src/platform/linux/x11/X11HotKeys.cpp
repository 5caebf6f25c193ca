#include "platform/linux/x11/X11HotKeys.h"

#include <utility>

namespace vantorel {

std::unique_ptr<X11HotKeys> X11HotKeys::open(Dispatch& dispatch, const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) return nullptr;
  std::unique_ptr<X11HotKeys> result(new X11HotKeys(dispatch, std::move(connection)));
  if (!result->grabber_.isAvailable()) return nullptr;
  return result;
}

X11HotKeys::X11HotKeys(Dispatch& dispatch, std::unique_ptr<X11Connection> connection)
    : dispatch_(dispatch),
      registrations_(std::make_shared<Registrations>()),
      grabber_(std::move(connection), [this](HotKeyRef reference) { announce(reference); }) {}

X11HotKeys::~X11HotKeys() = default;

bool X11HotKeys::installHandler(std::function<void(HotKeyId)> handler) {
  if (!grabber_.isAvailable()) return false;
  registrations_->handler = std::move(handler);
  return true;
}

void X11HotKeys::removeHandler() { registrations_->handler = nullptr; }

std::optional<HotKeyRef> X11HotKeys::registerHotKey(KeyCode keyCode, HotKeyModifiers modifiers,
                                                    HotKeyId id) {
  const HotKeyRef reference = lastReference_ + 1;
  if (!grabber_.add(reference, {keyCode, modifiers})) return std::nullopt;
  lastReference_ = reference;
  registrations_->ids.emplace(reference, id);
  return reference;
}

void X11HotKeys::unregisterHotKey(HotKeyRef reference) {
  if (registrations_->ids.erase(reference) != 0) grabber_.remove(reference);
}

void X11HotKeys::announce(HotKeyRef reference) const {
  dispatch_.async([weak = std::weak_ptr(registrations_), reference] {
    const auto registrations = weak.lock();
    if (!registrations || !registrations->handler) return;
    const auto found = registrations->ids.find(reference);
    if (found == registrations->ids.end()) return;
    // The handler may be replaced while it runs.
    const auto handler = registrations->handler;
    handler(found->second);
  });
}

}  // namespace vantorel
