// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "platform/HotKeys.h"

namespace vantorel {

/// The keys as portals take them, "LOGO+SHIFT+v"; empty for a key that has no Latin label.
[[nodiscard]] std::string portalTrigger(const HotKeyCombination& keys);

/// What a portal calls keys, as this program's texts write them: "⌘⇧V" for "Press <Shift><Super>v";
/// what it writes in another way stays.
[[nodiscard]] std::string shownPortalKeys(std::string_view description);

}  // namespace vantorel
