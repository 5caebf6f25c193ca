// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "platform/HotKeys.h"

namespace vantorel {

/// A shortcut as a portal is asked for it.
struct ShortcutWish {
  HotKeyRef reference = 0;
  std::string trigger;  // as portals write keys; empty: the user is to choose them
  bool mayAsk = false;  // else it is refused where there are shortcuts
};

/// Who hears what becomes of a wish, on the portal's thread.
struct ShortcutNews {
  /// The answer, with what the portal calls the keys if they are held; `held` again when they are
  /// others.
  std::function<void(HotKeyRef, HotKeyAnswer, const std::string& keys)> answered;
  std::function<void(HotKeyRef)> pressed;
};

}  // namespace vantorel
