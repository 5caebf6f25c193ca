// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "platform/linux/windows/KeyCodeTable.h"
#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

/// Which keyboard a press comes from: the server keeps the two apart.
enum class Keyboard { synthetic, hardware };

/// Somebody who presses keys and buttons.
class Fingers {
 public:
  /// `connection` outlives this.
  explicit Fingers(X11Connection& connection);

  void press(X11KeyCode key, Keyboard keyboard = Keyboard::synthetic);
  void release(X11KeyCode key, Keyboard keyboard = Keyboard::synthetic);
  /// All down, all up again in reverse.
  void strike(const std::vector<X11KeyCode>& keys, Keyboard keyboard = Keyboard::synthetic);
  void click(std::uint8_t button);

  /// Whether programs see the key pressed.
  [[nodiscard]] bool isDown(X11KeyCode key) const;
  /// Whether that keyboard holds it.
  [[nodiscard]] bool isDown(X11KeyCode key, Keyboard keyboard) const;

 private:
  void fake(std::uint8_t type, X11KeyCode key, Keyboard keyboard);

  X11Connection& connection_;
  std::uint8_t hardware_ = 0;  // its device
};

}  // namespace vantorel
