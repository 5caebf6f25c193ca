#include "app/HotKeyRegistration.h"

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
  if (!reference_ && shortcut_ != HotKeyShortcut{}) {
    shortcut_ = {};
    shortcut_.save(defaults_);
    tell("Saved shortcut unavailable. Using ⌘⇧V.");
    reference_ = take(shortcut_);
  }
  if (!reference_) tell("Shortcut unavailable. Open Keyboard Shortcut to choose another.");
}

HotKeyRegistration::ApplyResult HotKeyRegistration::apply(const HotKeyShortcut& candidate) {
  if (candidate == shortcut_ && reference_) return ApplyResult::unchanged;
  const auto reference = take(candidate);
  if (!reference) return ApplyResult::unavailable;
  if (reference_) hotKeys_.unregisterHotKey(*reference_);
  reference_ = reference;
  ensureHotKeyHandler();
  shortcut_ = candidate;
  shortcut_.save(defaults_);
  return ApplyResult::applied;
}

void HotKeyRegistration::unregisterHotKey() {
  if (reference_) hotKeys_.unregisterHotKey(*reference_);
  reference_.reset();
  if (handlerInstalled_) hotKeys_.removeHandler();
  handlerInstalled_ = false;
}

void HotKeyRegistration::ensureHotKeyHandler() {
  if (handlerInstalled_) return;
  handlerInstalled_ = hotKeys_.installHandler([this](HotKeyId id) { handlePress(id); });
  if (!handlerInstalled_) tell("Could not enable the keyboard shortcut.");
}

void HotKeyRegistration::handlePress(HotKeyId id) {
  if (id != clipHotKeyId) return;
  dispatch_.async(life_.guard([this] {
    if (onPressed) onPressed();
  }));
}

std::optional<HotKeyRef> HotKeyRegistration::take(const HotKeyShortcut& shortcut) {
  return hotKeys_.registerHotKey(shortcut.keyCode, shortcut.modifiers, clipHotKeyId);
}

void HotKeyRegistration::tell(std::string_view notice) const {
  if (onNotice) onNotice(notice);
}

}  // namespace vantorel
