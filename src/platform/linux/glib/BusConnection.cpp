// SPDX-License-Identifier: MIT
#include "platform/linux/glib/BusConnection.h"

namespace vantorel {

ObjectPointer<GDBusConnection> openBusConnection(const std::string& address,
                                                 const BusAwait& await) {
  const auto result =
      await([&](GCancellable* cancellable, GAsyncReadyCallback done, gpointer slot) {
        g_dbus_connection_new_for_address(
            address.c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, cancellable, done, slot);
      });
  GError* error = nullptr;
  ObjectPointer<GDBusConnection> connection(
      g_dbus_connection_new_for_address_finish(result.get(), &error));
  const ErrorPointer discarded(error);
  return connection;
}

}  // namespace vantorel
