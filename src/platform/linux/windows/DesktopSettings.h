// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/AccessibilityPreferences.h"

namespace vantorel {

/// What the user has set for the whole desktop, as far as it is told. Read afresh at each use.
class DesktopSettings : public AccessibilityPreferences {
 public:
  /// The theme of widgets; empty when none is named. Any thread. Changes are observed.
  [[nodiscard]] virtual std::string theme() const = 0;
  /// The theme of icons; empty when none is named. Any thread.
  [[nodiscard]] virtual std::string iconTheme() const = 0;
};

}  // namespace vantorel
