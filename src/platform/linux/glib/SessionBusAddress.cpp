// SPDX-License-Identifier: MIT
#include "platform/linux/glib/SessionBusAddress.h"

#include <system_error>

#include "base/PercentCoding.h"

namespace vantorel {

std::optional<std::string> sessionBusAddress(const EnvironmentLookup& lookup) {
  if (auto address = lookup("DBUS_SESSION_BUS_ADDRESS"); address && !address->empty()) {
    return address;
  }
  const auto runtime = XdgDirectories::fromEnvironment(lookup).runtime;
  if (!runtime) return std::nullopt;
  const auto socket = *runtime / "bus";
  std::error_code error;
  if (!std::filesystem::is_socket(socket, error)) return std::nullopt;
  return "unix:path=" + percentEncoded(socket.native(), "-_/.\\*");
}

}  // namespace vantorel
