// SPDX-License-Identifier: MIT
#include "chrome/GlassFinish.h"

namespace vantorel {

GlassFinish glassFinish(const AccessibilityPreferences& accessibility,
                        const WindowBackdrops* backdrops) {
  using Outline = GlassFinish::Outline;
  using Behind = GlassFinish::Behind;
  // The veil stands on a material of the same colour: together they keep small text legible where
  // a white page shines through dark glass.
  constexpr double veil = 0.62;
  constexpr double material = 0.7;
  constexpr double overBlur = 1 - (1 - veil) * (1 - material);
  const auto backdrop = backdrops != nullptr ? backdrops->available() : Backdrop::none;
  if (backdrop == Backdrop::none) return {1, Outline::shaped, Behind::asItIs};
  if (backdrop == Backdrop::blurrable && !accessibility.reduceTransparency()) {
    return {overBlur, Outline::blended, Behind::blurred};
  }
  return {1, Outline::blended, Behind::asItIs};
}

}  // namespace vantorel
