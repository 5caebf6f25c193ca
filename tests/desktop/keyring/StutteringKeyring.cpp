// SPDX-License-Identifier: MIT
#include "desktop/keyring/StutteringKeyring.h"

#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include "desktop/session/PrivateSession.h"

namespace vantorel {
namespace {

constexpr const char* serviceName = "org.freedesktop.secrets";
constexpr const char* servicePath = "/org/freedesktop/secrets";
constexpr const char* collectionPath = "/org/freedesktop/secrets/collection/only";

constexpr const char* description = R"(<node>
  <interface name="org.freedesktop.Secret.Service">
    <method name="ReadAlias"><arg type="s" direction="in"/><arg type="o" direction="out"/></method>
  </interface>
  <interface name="org.freedesktop.Secret.Collection">
    <method name="SearchItems">
      <arg type="a{ss}" direction="in"/><arg type="ao" direction="out"/>
    </method>
    <property name="Locked" type="b" access="read"/>
  </interface>
</node>)";

}  // namespace

StutteringKeyring::StutteringKeyring()
    : thread_("stuttering keyring", [this] {
        g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
        connection_.reset();
      }) {
  thread_.post([this] { open(); });
  if (!waitFor([] { return PrivateSession::hasOwner(serviceName); })) {
    throw std::runtime_error("waited in vain for the keyring's name");
  }
}

StutteringKeyring::~StutteringKeyring() = default;

void StutteringKeyring::open() {
  connection_.reset(g_dbus_connection_new_for_address_sync(
      std::getenv("DBUS_SESSION_BUS_ADDRESS"),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr));
  g_dbus_connection_set_exit_on_close(connection_.get(), FALSE);
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(description, nullptr);
  static const GDBusInterfaceVTable answers{
      .method_call =
          [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar* method,
             GVariant*, GDBusMethodInvocation* invocation,
             gpointer self) { static_cast<StutteringKeyring*>(self)->answer(method, invocation); },
      .get_property = [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                         GError**, gpointer) { return g_variant_new_boolean(FALSE); },
      .set_property = nullptr,
      .padding = {}};
  g_dbus_connection_register_object(connection_.get(), servicePath, node->interfaces[0], &answers,
                                    this, nullptr, nullptr);
  g_dbus_connection_register_object(connection_.get(), collectionPath, node->interfaces[1],
                                    &answers, this, nullptr, nullptr);
  g_dbus_node_info_unref(node);
  g_dbus_connection_call(connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                         "org.freedesktop.DBus", "RequestName",
                         g_variant_new("(su)", serviceName, 0), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
                         nullptr, nullptr, nullptr);
}

void StutteringKeyring::answer(const char* method, GDBusMethodInvocation* invocation) {
  if (!isReady_) {
    g_dbus_method_invocation_return_dbus_error(invocation, "org.freedesktop.DBus.Error.Failed",
                                               "not yet");
  } else if (std::string_view(method) == "ReadAlias") {
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", collectionPath));
  } else {
    g_dbus_method_invocation_return_value(invocation,
                                          g_variant_new("(@ao)", g_variant_new_objv(nullptr, 0)));
  }
}

}  // namespace vantorel
