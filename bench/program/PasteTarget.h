// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "program/Screen.h"

namespace vantorel::bench {

/// A window that does with a pressed Ctrl+V what a text field does: it asks for the clipboard.
class PasteTarget {
 public:
  explicit PasteTarget(const Screen& screen);

  /// Shows the window and waits until it has the keyboard.
  void show();
  [[nodiscard]] xcb_window_t window() const { return window_; }

  /// Waits until a text has arrived and answers when it did.
  Clock::time_point waitForText(Clock::time_point deadline);
  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  void ask() const;
  [[nodiscard]] bool take();

  const Screen& screen_;
  xcb_window_t window_;
  xcb_atom_t place_;
  std::string text_;
};

}  // namespace vantorel::bench
