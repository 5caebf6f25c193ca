// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Workspace.h"

namespace vantorel {

/// other: a palette, a dock, the desktop itself, or kept off the taskbar.
enum class WindowKind { normal, other };
enum class WindowManagement { managed, unmanaged };

/// What a window and the server say about it. Texts are valid UTF-8, empty when nothing is said.
struct WindowFacts {
  xcb_window_t window = XCB_WINDOW_NONE;
  WindowManagement management = WindowManagement::unmanaged;
  WindowKind kind = WindowKind::normal;
  std::string wmInstance;
  std::string wmClass;
  std::string desktopFile;                 // what toolkits announce: the id of the desktop entry
  std::string clientMachine;               // host name
  std::optional<std::uint32_t> statedPid;  // _NET_WM_PID: the program's own word
  std::optional<ProcessId> clientPid;      // the local process at the other end, by the server
};

/// Whether it is a window of an application rather than a part of one, or nobody's.
[[nodiscard]] inline bool isApplicationWindow(const WindowFacts& facts) {
  return facts.management == WindowManagement::managed || !facts.wmClass.empty();
}

}  // namespace vantorel
