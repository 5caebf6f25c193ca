// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "app/ShortcutAdvice.h"
#include "platform/DesktopFacts.h"

namespace vantorel {

/// What a user reads of the desktop before asking why something does not work.
struct DesktopReport {
  std::string text;  // lines of English, the last one ended too
  /// Copies can be recorded and pasted again by the shortcut.
  bool isEnough = false;

  /// `shortcut` as it is spelled for this desktop's keyboards; `advice` is for where no program can
  /// have one.
  [[nodiscard]] static DesktopReport of(const DesktopFacts& facts, const std::string& shortcut,
                                        const ShortcutAdvice& advice);
};

}  // namespace vantorel
