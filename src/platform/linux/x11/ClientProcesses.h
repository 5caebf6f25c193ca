// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/res.h>

#include <optional>

#include "platform/Workspace.h"
#include "platform/linux/x11/X11Connection.h"

namespace vantorel {

/// Which process made a window, by what the server itself knows of its clients: for those on this
/// machine, and only where the server has the extension for it. Any thread.
class ClientProcesses {
 public:
  /// `connection` outlives this.
  explicit ClientProcesses(X11Connection& connection);

  /// Absent for a client elsewhere and for a window that is gone. One round trip to the server.
  [[nodiscard]] std::optional<ProcessId> of(xcb_window_t window) const {
    return answer(ask(window));
  }

  /// The two halves of `of()`, for asking about many windows in one round trip. Each question is
  /// answered once.
  using Question = std::optional<xcb_res_query_client_ids_cookie_t>;
  [[nodiscard]] Question ask(xcb_window_t window) const;
  [[nodiscard]] std::optional<ProcessId> answer(const Question& question) const;

 private:
  X11Connection& connection_;
  bool known_ = false;
};

}  // namespace vantorel
