#pragma once

#include <string_view>

#include "platform/linux/DesktopEntry.h"

namespace vantorel {

/// The keys that a program pastes with.
enum class PasteKeys {
  controlV,
  controlShiftV,  // terminals, where Control with a letter is input
  shiftInsert,    // programs that know nothing else; some insert PRIMARY, so that is set too
};

/// What the program of a window pastes with, by its class and its desktop entry (null: none).
[[nodiscard]] PasteKeys pasteKeysFor(std::string_view wmClass, const DesktopEntry* entry);

}  // namespace vantorel
