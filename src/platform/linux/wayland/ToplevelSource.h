// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Workspace.h"
#include "platform/linux/wayland/WaylandThread.h"

namespace vantorel {

/// A window of another program, as the compositor describes it.
struct Toplevel {
  WindowToken token = 0;
  std::string appId;
  bool isActive = false;
  std::uint64_t lastInFront = 0;  // grows with each window that comes to the front; 0: never
};

/// The windows of a compositor that tells programs of them, on a connection and a thread of its
/// own. What is asked is answered from what was heard. Any thread, at once, except where said.
class ToplevelSource {
 public:
  /// Tokens from here on are of these windows; those of other windows are smaller.
  static constexpr WindowToken firstToken = WindowToken{1} << 48U;

  /// Both are called on the thread.
  struct Observer {
    std::function<void(Toplevel)> onActivated;  // another window has come to the front
    std::function<void()> onLost;               // nothing more will be told
  };

  virtual ~ToplevelSource() = default;

  /// The window that has the user's attention.
  [[nodiscard]] virtual std::optional<Toplevel> active() const = 0;
  [[nodiscard]] virtual std::optional<Toplevel> find(WindowToken token) const = 0;
  /// The one that was in front last first.
  [[nodiscard]] virtual std::vector<Toplevel> all() const = 0;
  /// Asks for the window to come to the front. False when it is gone.
  virtual bool activate(WindowToken token) = 0;

  /// For whoever presses keys for these windows: on it nothing is heard of them meanwhile. Lives as
  /// long as this.
  [[nodiscard]] virtual WaylandThread& thread() = 0;
};

}  // namespace vantorel
