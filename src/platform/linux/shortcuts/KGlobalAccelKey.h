// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/HotKeys.h"

namespace vantorel {

/// The keys as KDE's service for shortcuts writes them: what is printed on the key in the lower
/// bits, the modifiers in the upper ones. Absent without a label.
[[nodiscard]] std::optional<int> kGlobalAccelKey(const HotKeyCombination& combination);

}  // namespace vantorel
