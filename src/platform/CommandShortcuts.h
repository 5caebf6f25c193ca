// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/HotKeys.h"

namespace vantorel {

/// A list of commands and their keys that the desktop keeps for its user, in which a program may
/// stand when the user wants it there. One command of ours. Main thread.
class CommandShortcuts {
 public:
  virtual ~CommandShortcuts() = default;

  /// Whose list it is, as a user knows it.
  [[nodiscard]] virtual std::string owner() const = 0;
  /// Whether our command stands in the list; nobody but us and the user changes that.
  [[nodiscard]] virtual bool isSet() const = 0;
  /// Puts our command there, or gives it other keys; the label is Latin. False when the list cannot
  /// be changed. Whether others have those keys the desktop does not say.
  [[nodiscard]] virtual bool set(const HotKeyCombination& keys, const std::string& command) = 0;
  /// Takes it out again.
  [[nodiscard]] virtual bool remove() = 0;
};

}  // namespace vantorel
