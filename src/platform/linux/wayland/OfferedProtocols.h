// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/linux/wayland/ChordKeyboard.h"
#include "platform/linux/wayland/ToplevelSource.h"

namespace vantorel {

// What compositors have in common under different names: the one that is offered is taken.

/// The protocol and its version by which windows would be told; absent where they are not.
[[nodiscard]] std::optional<std::string> toplevelProtocol(const WaylandConnection& connection);
/// Null where windows are not told. Waits for the compositor alone.
[[nodiscard]] std::unique_ptr<ToplevelSource> openToplevels(
    std::unique_ptr<WaylandConnection> connection, ToplevelSource::Observer observer);

/// The same of keys that this program presses.
[[nodiscard]] std::optional<std::string> keyboardProtocol(const WaylandConnection& connection);
/// Null where none are taken. `thread` has started and outlives the result. Not on the thread.
[[nodiscard]] std::unique_ptr<ChordKeyboard> openKeyboard(
    WaylandThread& thread, std::unique_ptr<WaylandConnection> connection);

/// Whether it is KWin, which tells windows and takes keys from installed programs alone.
[[nodiscard]] bool wantsInstalledPrograms(const WaylandConnection& connection);

}  // namespace vantorel
