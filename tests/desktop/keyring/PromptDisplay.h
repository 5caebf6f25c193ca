// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "desktop/session/ChildProcess.h"

namespace vantorel {

/// A private X server for the desktop's real password dialog, and hands that answer it. Create it
/// before the session bus, which starts the dialog.
class PromptDisplay {
 public:
  PromptDisplay();
  ~PromptDisplay();
  PromptDisplay(const PromptDisplay&) = delete;
  PromptDisplay& operator=(const PromptDisplay&) = delete;

  /// Whether a password dialog shows.
  [[nodiscard]] static bool asks();
  /// Types the password and agrees, until the dialog is gone. False when it never goes.
  [[nodiscard]] static bool enterPassword(const std::string& password);
  /// Closes the dialog with Escape. False when it never goes.
  [[nodiscard]] static bool dismiss();

 private:
  ChildProcess server_;
  ChildProcess windowManager_;
};

}  // namespace vantorel
