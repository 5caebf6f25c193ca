// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "platform/linux/applications/DesktopEntry.h"

namespace vantorel {

/// The keys that a program pastes with.
enum class PasteKeys {
  controlV,
  controlShiftV,  // terminals, where Control with a letter is input
  shiftInsert,    // programs that know nothing else; some insert PRIMARY, so that is set too
};

/// Whether the program of a window pastes nothing before it has asked what the clipboard holds:
/// its command is off from each change until then.
[[nodiscard]] bool asksBeforePasting(std::string_view wmClass);

/// What the program of a window pastes with, by its class and its desktop entry (null: none).
[[nodiscard]] PasteKeys pasteKeysFor(std::string_view wmClass, const DesktopEntry* entry);

}  // namespace vantorel
