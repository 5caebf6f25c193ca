#pragma once

#include <string>

#include "platform/DesktopFacts.h"

namespace vantorel {

/// What a user reads of the desktop before asking why something does not work.
struct DesktopReport {
  std::string text;  // lines of English, the last one ended too
  /// Copies can be recorded and pasted again by the shortcut.
  bool isEnough = false;

  /// `shortcut` as it is spelled for this desktop's keyboards.
  [[nodiscard]] static DesktopReport of(const DesktopFacts& facts, const std::string& shortcut);
};

}  // namespace vantorel
