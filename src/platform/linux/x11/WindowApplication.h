// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Workspace.h"
#include "platform/linux/applications/DesktopEntryIndex.h"
#include "platform/linux/x11/WindowFacts.h"

namespace vantorel {

/// What this program is called.
inline constexpr const char* ownApplicationName = "Vantorel";

/// What tells processes of this machine from others.
struct LocalHost {
  std::string name;
  ProcessId ownPid = 0;
  std::uint32_t resourceMask = 0;  // bits of a window's id within its client

  /// `serverPid` is this process as the server sees it, which in a container is not the number it
  /// has there; absent where the server does not tell.
  [[nodiscard]] static LocalHost current(std::uint32_t resourceMask,
                                         std::optional<ProcessId> serverPid);
};

/// The process that a window belongs to: the one that the server sees at the other end, when it
/// runs on this machine; where the server sees none, the one that the window states, if there is
/// such a process. Any other client has a negative number of its own, the same for all its windows
/// and as long as it is connected, so that it can be told from others.
[[nodiscard]] ProcessId processOf(const WindowFacts& facts, const LocalHost& host);

/// When the local process was started, in seconds since the machine was; absent when that cannot be
/// told. Any thread.
[[nodiscard]] std::optional<double> startOf(ProcessId pid);

/// File name of the program that the local process runs; empty when it cannot be told. Any thread.
[[nodiscard]] std::string executableOf(ProcessId pid);

/// What the window says about its application, with its program's name.
[[nodiscard]] WindowIdentity identityOf(const WindowFacts& facts, const LocalHost& host);

/// Whether a window was ever seen in front.
enum class WindowHistory { neverInFront, wasInFront };

/// The application of a window whose desktop entry is `entry` (null: it has none). Regular when the
/// window is a normal one, or a managed one that was in front: whatever took the keyboard is worked
/// in, be it a dialog, a palette or a drop-down terminal. This program is always an accessory.
[[nodiscard]] RunningApplication applicationOf(const WindowFacts& facts, WindowHistory history,
                                               const DesktopEntry* entry, const LocalHost& host);

}  // namespace vantorel
