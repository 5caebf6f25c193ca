// SPDX-License-Identifier: MIT
#include "app/HotKeyRegistration.h"

#include <utility>

namespace vantorel {
namespace {

// What the user answered to the desktop's question, when it was no.
constexpr std::string_view refusedKey = "shortcut.refused";

}  // namespace

HotKeyRegistration::HotKeyRegistration(HotKeys& hotKeys, UserDefaults& defaults, Dispatch& dispatch)
    : hotKeys_(hotKeys),
      defaults_(defaults),
      dispatch_(dispatch),
      shortcut_(HotKeyShortcut::load(defaults)) {}

HotKeyRegistration::~HotKeyRegistration() { unregisterHotKey(); }

void HotKeyRegistration::registerHotKey(Asking asking) {
  letAsk(asking == Asking::allowed && !defaults_.boolean(refusedKey).value_or(false));
  ensureHotKeyHandler();
  if (reference_ || !handlerInstalled_) return;
  reference_ = take(shortcut_);
  if (!reference_) fallBack();
}

void HotKeyRegistration::fallBack() {
  reference_.reset();
  instead_.reset();
  if (shortcut_ != HotKeyShortcut{}) {
    store({});
    tell("Saved shortcut unavailable. Using ⌘⇧V.");
    reference_ = take(shortcut_);
  }
  if (!reference_) tell("Shortcut unavailable. Open Keyboard Shortcut to choose another.");
}

HotKeyRegistration::ApplyResult HotKeyRegistration::apply(const HotKeyShortcut& candidate) {
  dropCandidate();
  if (candidate == shortcut() && reference_ && !isAbsent_) return ApplyResult::unchanged;
  letAsk(true);
  const bool wasAwaited = reference_ && hotKeys_.isAwaited(*reference_);
  const auto reference = take(candidate);
  // A desktop that is asked one thing at a time drops the older wish.
  if (wasAwaited && !hotKeys_.isAwaited(*reference_)) reference_.reset();
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
    note(answer);
    lookForOthersHeld(reference);
    if (isAbsent_ && !hotKeys_.isAwaited(reference)) reference_.reset();
  }
  changed();
}

void HotKeyRegistration::lookForOthersHeld(HotKeyRef reference) {
  instead_.reset();
  if (const auto keys = hotKeys_.heldInstead(reference)) {
    instead_ = {keys->keyCode, keys->modifiers, keys->label};
  }
}

void HotKeyRegistration::candidateAnswered(HotKeyAnswer answer) {
  const Candidate candidate = *std::exchange(candidate_, std::nullopt);
  note(answer);
  auto result = ApplyResult::unavailable;
  if (answer == HotKeyAnswer::held) {
    adopt(candidate.shortcut, candidate.reference);
    result = ApplyResult::applied;
  } else if (answer == HotKeyAnswer::refused) {
    reference_.reset();
    result = ApplyResult::refused;
  } else if (isAbsent_) {
    reference_.reset();
    if (hotKeys_.isAwaited(candidate.reference)) reference_ = candidate.reference;
    store(candidate.shortcut);
    result = ApplyResult::kept;
  }
  if (onApplied) onApplied(result);
}

void HotKeyRegistration::note(HotKeyAnswer answer) {
  const bool isRefused = answer == HotKeyAnswer::refused;
  isAbsent_ = isRefused || answer == HotKeyAnswer::absent;
  consent_ = Consent::notMissing;
  if (isRefused) {
    const bool saidNo = mayAsk_ || defaults_.boolean(refusedKey).value_or(false);
    consent_ = saidNo ? Consent::refused : Consent::notAskedFor;
    if (saidNo) defaults_.set(refusedKey, true);
  } else if (answer == HotKeyAnswer::held && defaults_.boolean(refusedKey)) {
    defaults_.remove(refusedKey);
  }
}

void HotKeyRegistration::letAsk(bool may) {
  mayAsk_ = may;
  hotKeys_.setMayAsk(may);
}

std::string HotKeyRegistration::display() const {
  return isGiven() ? hotKeys_.given(*reference_) : shortcut().display();
}

bool HotKeyRegistration::isGiven() const {
  return reference_ && !hotKeys_.given(*reference_).empty();
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
  instead_.reset();
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
