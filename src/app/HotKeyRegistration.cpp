// SPDX-License-Identifier: MIT
#include "app/HotKeyRegistration.h"

#include <utility>

namespace vantorel {

HotKeyRegistration::HotKeyRegistration(HotKeys& hotKeys, UserDefaults& defaults, Dispatch& dispatch)
    : hotKeys_(hotKeys),
      defaults_(defaults),
      dispatch_(dispatch),
      shortcut_(HotKeyShortcut::load(defaults)) {}

HotKeyRegistration::~HotKeyRegistration() { unregisterHotKey(); }

void HotKeyRegistration::registerHotKey() {
  ensureHotKeyHandler();
  if (reference_ || !handlerInstalled_) return;
  reference_ = take(shortcut_);
  if (!reference_) fallBack();
}

void HotKeyRegistration::fallBack() {
  reference_.reset();
  if (shortcut_ != HotKeyShortcut{}) {
    store({});
    tell("Saved shortcut unavailable. Using ⌘⇧V.");
    reference_ = take(shortcut_);
  }
  if (!reference_) tell("Shortcut unavailable. Open Keyboard Shortcut to choose another.");
}

HotKeyRegistration::ApplyResult HotKeyRegistration::apply(const HotKeyShortcut& candidate) {
  dropCandidate();
  if (candidate == shortcut_ && reference_) return ApplyResult::unchanged;
  const auto reference = take(candidate);
  if (!reference) return ApplyResult::unavailable;
  if (hotKeys_.isAwaited(*reference)) {
    candidate_ = {candidate, *reference};
    return ApplyResult::asked;
  }
  adopt(candidate, *reference);
  ensureHotKeyHandler();
  return ApplyResult::applied;
}

void HotKeyRegistration::unregisterHotKey() {
  dropCandidate();
  if (reference_) hotKeys_.unregisterHotKey(*reference_);
  reference_.reset();
  if (handlerInstalled_) {
    hotKeys_.setAnswerHandler({});
    hotKeys_.removeHandler();
  }
  handlerInstalled_ = false;
}

void HotKeyRegistration::ensureHotKeyHandler() {
  if (handlerInstalled_) return;
  handlerInstalled_ = hotKeys_.installHandler([this](HotKeyId id) { handlePress(id); });
  if (!handlerInstalled_) return tell("Could not enable the keyboard shortcut.");
  hotKeys_.setAnswerHandler(
      [this](HotKeyRef reference, HotKeyAnswer answer) { answered(reference, answer); });
}

void HotKeyRegistration::handlePress(HotKeyId id) {
  if (id != clipHotKeyId) return;
  dispatch_.async(life_.guard([this] {
    if (onPressed) onPressed();
  }));
}

void HotKeyRegistration::answered(HotKeyRef reference, HotKeyAnswer answer) {
  if (candidate_ && candidate_->reference == reference) return candidateAnswered(answer);
  if (reference_ != reference) return;
  if (answer == HotKeyAnswer::taken) {
    fallBack();
  } else {
    isAbsent_ = answer == HotKeyAnswer::absent;
    if (isAbsent_) reference_.reset();
  }
  changed();
}

void HotKeyRegistration::candidateAnswered(HotKeyAnswer answer) {
  const Candidate candidate = *std::exchange(candidate_, std::nullopt);
  isAbsent_ = answer == HotKeyAnswer::absent;
  auto result = ApplyResult::unavailable;
  if (answer == HotKeyAnswer::held) {
    adopt(candidate.shortcut, candidate.reference);
    result = ApplyResult::applied;
  } else if (isAbsent_) {
    reference_.reset();
    store(candidate.shortcut);
    result = ApplyResult::kept;
  }
  if (onApplied) onApplied(result);
}

void HotKeyRegistration::dropCandidate() {
  if (const auto dropped = std::exchange(candidate_, std::nullopt)) {
    hotKeys_.unregisterHotKey(dropped->reference);
  }
}

void HotKeyRegistration::adopt(const HotKeyShortcut& shortcut, HotKeyRef reference) {
  if (reference_) hotKeys_.unregisterHotKey(*reference_);
  reference_ = reference;
  store(shortcut);
}

void HotKeyRegistration::store(const HotKeyShortcut& shortcut) {
  shortcut_ = shortcut;
  shortcut_.save(defaults_);
}

std::optional<HotKeyRef> HotKeyRegistration::take(const HotKeyShortcut& shortcut) {
  return hotKeys_.registerHotKey({shortcut.keyCode, shortcut.modifiers, shortcut.keyLabel},
                                 clipHotKeyId);
}

void HotKeyRegistration::tell(std::string_view notice) const {
  if (onNotice) onNotice(notice);
}

void HotKeyRegistration::changed() const {
  if (onChange) onChange();
}

}  // namespace vantorel
