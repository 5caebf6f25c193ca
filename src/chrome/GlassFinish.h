// SPDX-License-Identifier: MIT
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
  enum class Behind {
    asItIs,
    blurred,
  };
  double veilAlpha = 1;  // of the window colour that keeps text legible
  Outline outline = Outline::shaped;
  Behind behind = Behind::asItIs;
  friend bool operator==(const GlassFinish&, const GlassFinish&) = default;
};

/// A little of what lies behind a window may come through where it is blurred, and nothing where it
/// would be seen sharp or when the user asked for that.
[[nodiscard]] GlassFinish glassFinish(const AccessibilityPreferences& accessibility,
                                      const WindowBackdrops* backdrops);

}  // namespace vantorel
