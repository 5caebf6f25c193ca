// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace vantorel {

struct Notification {
  std::string title;
  std::string body;         // plain text
  std::string action = {};  // the title of its button; empty for none
};

/// Messages that the desktop shows and keeps until the user has seen to them. Main thread. Where
/// nobody shows messages nothing happens.
class Notifications {
 public:
  virtual ~Notifications() = default;

  /// Shows a message in place of the one before. `onAction` is called on the main queue when its
  /// button was pressed, at most once, and not after `withdraw` or the next `post`.
  virtual void post(const Notification& notification, std::function<void()> onAction) = 0;
  /// Takes the message away, if it is still there.
  virtual void withdraw() = 0;
};

}  // namespace vantorel
