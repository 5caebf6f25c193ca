#pragma once

#include "platform/AccessibilityPreferences.h"
#include "platform/WindowBackdrops.h"

namespace vantorel {

/// How a glass background is drawn where it stands.
struct GlassFinish {
  enum class Outline {
    blended,  // corners fade into what is behind the window
    shaped,   // the window ends at its outline
  };
  double veilAlpha = 1;  // of the window colour that keeps text legible
  Outline outline = Outline::shaped;
  friend bool operator==(const GlassFinish&, const GlassFinish&) = default;
};

/// What lies behind the window is seen sharp, so little of it may come through; none does when the
/// user asked for that or nothing is seen through windows.
[[nodiscard]] GlassFinish glassFinish(const AccessibilityPreferences& accessibility,
                                      const WindowBackdrops* backdrops);

}  // namespace vantorel
