// SPDX-License-Identifier: MIT
#include "platform/linux/settings/ColorScheme.h"

#include "base/Ascii.h"

namespace vantorel {
namespace {

constexpr std::uint32_t portalDark = 1;
constexpr std::uint32_t portalLight = 2;

/// Themes that come in both are called "…-dark", "…:dark" or "…Dark".
bool isDarkTheme(std::string_view name) {
  const auto lower = asciiLowerCased(name);
  constexpr std::string_view mark = "dark";
  const auto place = lower.rfind(mark);
  return place != std::string::npos && place > 0 &&
         (place + mark.size() == lower.size() || lower[place + mark.size()] == '-');
}

}  // namespace

ColorScheme colorScheme(std::optional<std::uint32_t> portal, std::string_view environmentTheme,
                        std::string_view theme) {
  if (portal == portalDark) return ColorScheme::dark;
  if (portal == portalLight) return ColorScheme::light;
  const auto named = environmentTheme.empty() ? theme : environmentTheme;
  return isDarkTheme(named) ? ColorScheme::dark : ColorScheme::unspecified;
}

}  // namespace vantorel
