// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vantorel {

/// What the user's desktop is drawn in.
enum class ColorScheme { unspecified, light, dark };

/// What a Linux desktop says about it: what its settings portal answers (1 dark, 2 light), if it
/// answers and has a preference; else what the names of themes say, the first of them that is
/// given. `environmentTheme` is that of GTK_THEME, `theme` that of the settings manager.
[[nodiscard]] ColorScheme colorScheme(std::optional<std::uint32_t> portal,
                                      std::string_view environmentTheme, std::string_view theme);

}  // namespace vantorel
