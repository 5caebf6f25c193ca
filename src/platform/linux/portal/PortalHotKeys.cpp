// SPDX-License-Identifier: MIT
#include "platform/linux/portal/PortalHotKeys.h"

#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/portal/Portal.h"
#include "platform/linux/portal/PortalKeys.h"

namespace vantorel {

PortalHotKeys::PortalHotKeys(Dispatch& dispatch, Portal& portal) : portal_(portal) {
  portal_.hearOfShortcut(
      {.answered = onMainQueue(
           dispatch,
           life_.guard([this](HotKeyRef reference, HotKeyAnswer answer, const std::string& keys) {
             answered(reference, answer, keys);
           })),
       .pressed = onMainQueue(dispatch,
                              life_.guard([this](HotKeyRef reference) { pressed(reference); }))});
}

PortalHotKeys::~PortalHotKeys() {
  if (registration_) portal_.giveShortcutBack();
}

bool PortalHotKeys::installHandler(std::function<void(HotKeyId)> handler) {
  handler_ = std::move(handler);
  return true;
}

std::optional<HotKeyRef> PortalHotKeys::registerHotKey(const HotKeyCombination& combination,
                                                       HotKeyId id) {
  if (registration_ && registration_->isHeld()) return std::nullopt;
  registration_ = {.reference = ++lastReference_, .id = id};
  portal_.wantShortcut({lastReference_, portalTrigger(combination), mayAsk_});
  return lastReference_;
}

void PortalHotKeys::unregisterHotKey(HotKeyRef reference) {
  if (!isRegistered(reference)) return;
  registration_.reset();
  portal_.giveShortcutBack();
}

bool PortalHotKeys::isAwaited(HotKeyRef reference) const {
  return isRegistered(reference) && !registration_->isHeld();
}

std::string PortalHotKeys::given(HotKeyRef reference) const {
  return isRegistered(reference) ? shownPortalKeys(registration_->keys) : std::string();
}

void PortalHotKeys::answered(HotKeyRef reference, HotKeyAnswer answer, const std::string& keys) {
  if (!isRegistered(reference)) return;
  auto& known = *registration_;
  if (known.answer == answer && known.keys == keys) return;
  known.answer = answer;
  known.keys = keys;
  if (answer == HotKeyAnswer::refused) registration_.reset();
  // The handler may be replaced while it runs.
  if (const auto handler = answerHandler_) handler(reference, answer);
}

void PortalHotKeys::pressed(HotKeyRef reference) const {
  if (!isRegistered(reference)) return;
  if (const auto handler = handler_) handler(registration_->id);
}

}  // namespace vantorel
