// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include "platform/HotKeys.h"

namespace vantorel {

/// The keys as KDE's service for shortcuts writes them: what is printed on the key in the lower
/// bits, the modifiers in the upper ones. Empty without a label.
///
/// KWin looks for what a key types: of a digit with Shift it hears the sign above the digit,
/// without Shift. So such keys are written both ways, the sign as on a US keyboard.
[[nodiscard]] QList<int> kGlobalAccelKeys(const HotKeyCombination& combination);

/// The other way, for keys of whatever kind; the place on the keyboard is left out.
[[nodiscard]] HotKeyCombination combinationOf(int kGlobalAccelKey);

}  // namespace vantorel
