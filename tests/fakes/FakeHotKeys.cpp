// SPDX-License-Identifier: MIT
#include "fakes/FakeHotKeys.h"

#include <algorithm>
#include <utility>

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

std::optional<HotKeyRef> FakeHotKeys::registerHotKey(const HotKeyCombination& combination,
                                                     HotKeyId id) {
  const auto [keyCode, modifiers, label] = combination;
  log_.emplace_back("register");
  if (replacesAwaited_) {
    for (const auto reference : std::exchange(awaited_, {})) registered_.erase(reference);
  }
  if (taken_.contains({keyCode, modifiers})) return std::nullopt;
  for (const auto& [reference, other] : registered_) {
    if (other.keyCode == keyCode && other.modifiers == modifiers) return std::nullopt;
  }
  if (answersLater_) awaited_.insert(nextReference_);
  registered_[nextReference_] = {keyCode, modifiers, id};
  return nextReference_++;
}

void FakeHotKeys::unregisterHotKey(HotKeyRef reference) {
  if (onUnregister) onUnregister();
  registered_.erase(reference);
  awaited_.erase(reference);
  log_.emplace_back("unregister");
}

void FakeHotKeys::answer(HotKeyAnswer answer) {
  const HotKeyRef newest = registered_.rbegin()->first;
  const bool stays = staysAwaited_ && answer == HotKeyAnswer::absent;
  if (!stays) awaited_.erase(newest);
  if (!stays && answer != HotKeyAnswer::held) registered_.erase(newest);
  if (const auto handler = answerHandler_) handler(newest, answer);
}

void FakeHotKeys::chooseInstead(const HotKeyCombination& keys) {
  chosenFor_ = registered_.rbegin()->first;
  chosen_ = keys;
  answer(HotKeyAnswer::held);
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
