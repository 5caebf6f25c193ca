// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "platform/DesktopFacts.h"
#include "platform/HotKeys.h"
#include "platform/UserDefaults.h"

namespace vantorel {

struct ShortcutKeys {
  KeyCode keyCode = 0;
  HotKeyModifiers modifiers = 0;
};

/// Looks at the desktop of this session once, without an application object. Changes nothing, shows
/// nothing, asks for no password; may wait some seconds for a keyring that has to start. `chosen`
/// says which shortcut the user's settings ask for.
[[nodiscard]] DesktopFacts surveyDesktop(
    const std::function<ShortcutKeys(const UserDefaults&)>& chosen);

}  // namespace vantorel
