// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyEvent.h"

class QKeyEvent;

namespace vantorel {

/// The key code of keys that this program has no number for.
inline constexpr KeyCode unknownKeyCode = 0xFF;

/// A toolkit's key press in this program's own terms: Ctrl and Super are command, Alt is option.
///
/// The characters without modifiers are what the layout prints on the key. Where that is no Latin
/// letter, they are what a US keyboard prints at the same place, so that commands work on every
/// layout; likewise for the digits of layouts that have them shifted.
[[nodiscard]] KeyEvent translated(const QKeyEvent& event,
                                  const KeyCodeForScanCode& keyCodeForScanCode);

/// The same for a global shortcut, which tells the keys apart: Super is command, Ctrl is control.
/// The key of a digit counts as the digit although Shift makes a sign of it, for it is the key that
/// is meant.
[[nodiscard]] KeyEvent translatedForShortcut(const QKeyEvent& event,
                                             const KeyCodeForScanCode& keyCodeForScanCode);

/// Whether the key only changes what others mean.
[[nodiscard]] bool isModifierKey(const QKeyEvent& event);

}  // namespace vantorel
