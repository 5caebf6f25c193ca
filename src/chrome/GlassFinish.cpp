#include "chrome/GlassFinish.h"

namespace vantorel {

GlassFinish glassFinish(const AccessibilityPreferences& accessibility,
                        const WindowBackdrops* backdrops) {
  using Outline = GlassFinish::Outline;
  using Behind = GlassFinish::Behind;
  constexpr double overBlur = 0.62;
  constexpr double overSharpBackdrop = 0.96;
  const auto backdrop = backdrops != nullptr ? backdrops->available() : Backdrop::none;
  if (backdrop == Backdrop::none) return {1, Outline::shaped, Behind::asItIs};
  if (accessibility.reduceTransparency()) return {1, Outline::blended, Behind::asItIs};
  if (backdrop == Backdrop::blurrable) return {overBlur, Outline::blended, Behind::blurred};
  return {overSharpBackdrop, Outline::blended, Behind::asItIs};
}

}  // namespace vantorel
