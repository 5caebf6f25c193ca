#pragma once

#include <string>

#include "platform/KeyCodes.h"

namespace vantorel {

/// One press of a key in a window of this program.
struct KeyEvent {
  KeyCode keyCode = 0;
  EventFlags flags = 0;
  std::string characters;                   // UTF-8, what the press would type
  std::string charactersIgnoringModifiers;  // UTF-8, what the key alone (with Shift) types
};

}  // namespace vantorel
