#pragma once

#include <cstdint>
#include <string>

#include "platform/Workspace.h"
#include "platform/linux/DesktopEntryIndex.h"
#include "platform/linux/x11/X11Windows.h"

namespace vantorel {

/// The identifier of this program, and what it is called.
inline constexpr const char* ownApplicationId = "com.vantorel.Vantorel";
inline constexpr const char* ownApplicationName = "Vantorel";

/// What tells processes of this machine from others.
struct LocalHost {
  std::string name;
  ProcessId ownPid = 0;
  std::uint32_t resourceMask = 0;  // bits of a window's id within its client

  [[nodiscard]] static LocalHost current(std::uint32_t resourceMask);
};

/// The process that a window belongs to: what it states or what the server sees, when it runs on
/// this machine. A client from elsewhere has a negative number of its own, the same for all its
/// windows and as long as it is connected, so that it can be told from others.
[[nodiscard]] ProcessId processOf(const WindowFacts& facts, const LocalHost& host);

/// File name of the program that the local process runs; empty when it cannot be told. Any thread.
[[nodiscard]] std::string executableOf(ProcessId pid);

/// What the window says about its application, with its program's name.
[[nodiscard]] WindowIdentity identityOf(const WindowFacts& facts, const LocalHost& host);

/// The application of a window whose desktop entry is `entry` (null: it has none). Regular when
/// the window is a normal one; this program is always an accessory.
[[nodiscard]] RunningApplication applicationOf(const WindowFacts& facts, const DesktopEntry* entry,
                                               const LocalHost& host);

}  // namespace vantorel
