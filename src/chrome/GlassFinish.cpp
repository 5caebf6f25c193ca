#include "chrome/GlassFinish.h"

namespace vantorel {

GlassFinish glassFinish(const AccessibilityPreferences& accessibility,
                        const WindowBackdrops* backdrops) {
  constexpr double overSharpBackdrop = 0.96;
  const auto backdrop = backdrops != nullptr ? backdrops->available() : Backdrop::none;
  if (backdrop == Backdrop::none) return {1, GlassFinish::Outline::shaped};
  const double alpha = accessibility.reduceTransparency() ? 1 : overSharpBackdrop;
  return {alpha, GlassFinish::Outline::blended};
}

}  // namespace vantorel
