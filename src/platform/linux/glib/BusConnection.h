// SPDX-License-Identifier: MIT
#pragma once

#include <gio/gio.h>

#include <functional>
#include <string>

#include "platform/linux/glib/GlibLoop.h"

namespace vantorel {

/// How the caller waits for an operation of GIO: its loop's or its thread's `await`.
using BusAwait = std::function<ObjectPointer<GAsyncResult>(const GlibLoop::Start&)>;

/// A connection of its own to the message bus at `address`, which has answered. Null when it did
/// not while `await` waited. The end of the bus is not the end of this process.
[[nodiscard]] ObjectPointer<GDBusConnection> openBusConnection(const std::string& address,
                                                               const BusAwait& await);

}  // namespace vantorel
