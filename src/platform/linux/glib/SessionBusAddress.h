// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// Where the user's session bus listens: $DBUS_SESSION_BUS_ADDRESS, else the socket "bus" in the
/// runtime directory. Absent when neither is there: a bus that this program started by itself would
/// reach nobody.
[[nodiscard]] std::optional<std::string> sessionBusAddress(const EnvironmentLookup& lookup);

}  // namespace vantorel
