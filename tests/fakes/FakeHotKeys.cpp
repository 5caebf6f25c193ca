#include "fakes/FakeHotKeys.h"

#include <algorithm>

namespace vantorel {

bool FakeHotKeys::installHandler(std::function<void(HotKeyId)> handler) {
  ++installs_;
  if (installFails_) return false;
  handler_ = std::move(handler);
  return true;
}

void FakeHotKeys::removeHandler() {
  handler_ = {};
  log_.emplace_back("removeHandler");
}

std::optional<HotKeyRef> FakeHotKeys::registerHotKey(KeyCode keyCode, HotKeyModifiers modifiers,
                                                     HotKeyId id) {
  log_.emplace_back("register");
  if (taken_.contains({keyCode, modifiers})) return std::nullopt;
  for (const auto& [reference, other] : registered_) {
    if (other.keyCode == keyCode && other.modifiers == modifiers) return std::nullopt;
  }
  registered_[nextReference_] = {keyCode, modifiers, id};
  return nextReference_++;
}

void FakeHotKeys::unregisterHotKey(HotKeyRef reference) {
  if (onUnregister) onUnregister();
  registered_.erase(reference);
  log_.emplace_back("unregister");
}

void FakeHotKeys::pressHotKey(HotKeyId id) {
  if (const auto handler = handler_) handler(id);
}

bool FakeHotKeys::press(KeyCode keyCode, HotKeyModifiers modifiers) {
  const auto found = std::find_if(registered_.begin(), registered_.end(), [&](const auto& entry) {
    return entry.second.keyCode == keyCode && entry.second.modifiers == modifiers;
  });
  if (found == registered_.end()) return false;
  pressHotKey(found->second.id);
  return true;
}

std::vector<FakeHotKeys::Registered> FakeHotKeys::registered() const {
  std::vector<Registered> all;
  for (const auto& [reference, registered] : registered_) all.push_back(registered);
  return all;
}

}  // namespace vantorel
