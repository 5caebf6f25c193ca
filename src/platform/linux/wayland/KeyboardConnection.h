// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>

#include "platform/linux/wayland/WaylandThread.h"

namespace vantorel {

/// A connection on which keys are pressed, served by the thread of the windows. It is one of its
/// own, for a compositor that does not want the keys hangs up on it.
class KeyboardConnection {
 public:
  /// `thread` has started and outlives this.
  KeyboardConnection(WaylandThread& thread, std::unique_ptr<WaylandConnection> connection);
  ~KeyboardConnection();
  KeyboardConnection(const KeyboardConnection&) = delete;
  KeyboardConnection& operator=(const KeyboardConnection&) = delete;

  [[nodiscard]] WaylandConnection& connection() const { return *connection_; }
  /// Hears what the compositor says from now on. False when the thread runs nothing more. Not on
  /// the thread.
  [[nodiscard]] bool listen();
  /// Waits until the compositor has dealt with all that was asked, `ChordKeyboard::answerLimit` at
  /// most. Before `listen()`, or on the thread.
  [[nodiscard]] bool settle();
  /// Before what the compositor calls is destroyed: it calls nothing more. Not on the thread.
  void leave();

  /// Whether the compositor is still there. Any thread.
  [[nodiscard]] bool isOpen() const { return isOpen_; }

 private:
  void lose();

  WaylandThread& thread_;
  std::unique_ptr<WaylandConnection> connection_;
  std::atomic<bool> isOpen_ = true;
};

}  // namespace vantorel
