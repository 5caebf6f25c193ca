// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "platform/SyntheticInput.h"
#include "platform/linux/windows/PasteKeys.h"
#include "platform/linux/x11/KeyboardMap.h"
#include "platform/linux/x11/X11Keyboard.h"

namespace vantorel {

/// Keys that are pressed together.
struct KeyChord {
  std::vector<X11KeyCode> modifiers;
  X11KeyCode key = 0;
  friend bool operator==(const KeyChord&, const KeyChord&) = default;
};

struct KeyAction {
  X11KeyCode key = 0;
  KeyDirection direction = KeyDirection::down;
  friend bool operator==(const KeyAction&, const KeyAction&) = default;
};

struct ChordPlan {
  std::vector<KeyAction> actions;     // in this order, without anything in between
  std::vector<X11KeyCode> suspended;  // held modifiers that were let go for the chord's sake
};

/// What has to be pressed for `keys` on this keyboard. A keyboard without a v pastes by
/// Shift+Insert whatever was asked for, and `keys` says so afterwards. Absent when the keyboard
/// lacks even that.
[[nodiscard]] std::optional<KeyChord> chordFor(const KeyboardMap& map, std::size_t activeGroup,
                                               PasteKeys& keys);

/// The key at `keyCode`'s place with the modifiers in `flags`; Command is Control here. Absent when
/// the keyboard lacks one of them.
[[nodiscard]] std::optional<KeyChord> chordAt(const KeyboardMap& map, KeyCode keyCode,
                                              EventFlags flags);

/// The chord, undisturbed by what is held. Every held key but the Lock keys is let go first: a
/// modifier would spoil the chord, a shortcut's key keeps the keyboard for whoever grabbed it, and
/// the key that chose the entry would go on repeating into the target. So is what synthetic input
/// still holds although no program sees it pressed.
[[nodiscard]] ChordPlan planChord(const KeyboardMap& map, const KeyChord& chord,
                                  const KeyPresses& presses);

/// Which of the suspended keys are to be pressed again: those that fingers hold still, and those
/// that no finger ever held.
[[nodiscard]] std::vector<X11KeyCode> keysToRestore(const std::vector<X11KeyCode>& suspended,
                                                    const KeyPresses& before,
                                                    const KeyPresses& now);

}  // namespace vantorel
