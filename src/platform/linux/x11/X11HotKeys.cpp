// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11HotKeys.h"

#include <utility>

#include "platform/MainQueue.h"

namespace vantorel {

std::unique_ptr<X11HotKeys> X11HotKeys::open(Dispatch& dispatch, const std::string& display) {
  auto connection = X11Connection::open(display);
  if (!connection) return nullptr;
  std::unique_ptr<X11HotKeys> result(new X11HotKeys(dispatch, std::move(connection)));
  if (!result->grabber_.isAvailable()) return nullptr;
  return result;
}

X11HotKeys::X11HotKeys(Dispatch& dispatch, std::unique_ptr<X11Connection> connection)
    : grabber_(std::move(connection),
               onMainQueue(dispatch,
                           life_.guard([this](HotKeyRef reference) { announce(reference); }))) {}

X11HotKeys::~X11HotKeys() = default;

bool X11HotKeys::installHandler(std::function<void(HotKeyId)> handler) {
  if (!grabber_.isAvailable()) return false;
  handler_ = std::move(handler);
  return true;
}

void X11HotKeys::removeHandler() { handler_ = nullptr; }

std::optional<HotKeyRef> X11HotKeys::registerHotKey(const HotKeyCombination& combination,
                                                    HotKeyId id) {
  const HotKeyRef reference = lastReference_ + 1;
  if (!grabber_.add(reference, combination)) return std::nullopt;
  lastReference_ = reference;
  ids_.emplace(reference, id);
  return reference;
}

void X11HotKeys::unregisterHotKey(HotKeyRef reference) {
  if (ids_.erase(reference) != 0) grabber_.remove(reference);
}

void X11HotKeys::announce(HotKeyRef reference) const {
  const auto found = ids_.find(reference);
  if (!handler_ || found == ids_.end()) return;
  // The handler may be replaced, and the shortcut given back, while it runs.
  const auto handler = handler_;
  const HotKeyId id = found->second;
  handler(id);
}

}  // namespace vantorel
