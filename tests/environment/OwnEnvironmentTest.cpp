// SPDX-License-Identifier: MIT
#include <gio/gio.h>
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <cstdlib>

namespace vantorel {
namespace {

// Where the address is missing instead of leading nowhere, both libraries try to start a bus. On a
// machine that cannot, libdbus leaks, and the sanitizer tells; on one that can, they succeed.

TEST(OwnEnvironment, HasNoBusForQt) {
  for (const auto bus : {QDBusConnection::SessionBus, QDBusConnection::SystemBus}) {
    EXPECT_FALSE(QDBusConnection::connectToBus(bus, "test").isConnected()) << bus;
    QDBusConnection::disconnectFromBus("test");
  }
}

TEST(OwnEnvironment, HasNoBusForGio) {
  for (const auto bus : {G_BUS_TYPE_SESSION, G_BUS_TYPE_SYSTEM}) {
    GError* error = nullptr;
    GDBusConnection* connection = g_bus_get_sync(bus, nullptr, &error);
    EXPECT_EQ(connection, nullptr) << bus;
    // Nobody listens there, rather than nobody could say where.
    EXPECT_TRUE(g_error_matches(error, G_IO_ERROR, G_IO_ERROR_NOT_FOUND)) << bus;
    g_clear_object(&connection);
    g_clear_error(&error);
  }
}

TEST(OwnEnvironment, IsThatOfNoLanguage) { EXPECT_STREQ(std::getenv("LC_ALL"), "C.UTF-8"); }

}  // namespace
}  // namespace vantorel
