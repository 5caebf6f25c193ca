// SPDX-License-Identifier: MIT
#include "platform/linux/keyring/KeyringSession.h"

#include <memory>

namespace vantorel {
namespace {

struct ValueUnref {
  void operator()(SecretValue* value) const { secret_value_unref(value); }
};
using ValuePointer = std::unique_ptr<SecretValue, ValueUnref>;

constexpr const char* contentType = "application/octet-stream";

}  // namespace

KeyringAnswer<KeyringSession> KeyringSession::open(KeyringBus& bus) {
  const GDBusConnection* connection = bus.connection();
  if (!connection) return KeyringFailure::noAnswer;
  const auto result = bus.thread().await(
      bus.deadline(), [](GCancellable* cancellable, GAsyncReadyCallback done, gpointer slot) {
        secret_service_open(SECRET_TYPE_SERVICE, KeyringBus::serviceName,
                            SECRET_SERVICE_OPEN_SESSION, cancellable, done, slot);
      });
  GError* error = nullptr;
  ObjectPointer<SecretService> service(secret_service_open_finish(result.get(), &error));
  const ErrorPointer discarded(error);
  if (!service) return KeyringFailure::noAnswer;
  // A session belongs to the connection that opened it.
  if (g_dbus_proxy_get_connection(G_DBUS_PROXY(service.get())) != connection) {
    return KeyringFailure::noAnswer;
  }
  return KeyringSession(std::move(service));
}

const char* KeyringSession::path() const {
  return secret_service_get_session_dbus_path(service_.get());
}

GVariant* KeyringSession::encode(const SecretBytes& secret) const {
  const std::string_view text = textOf(secret.view());
  const ValuePointer value(
      secret_value_new(text.data(), static_cast<gssize>(text.size()), contentType));
  return secret_service_encode_dbus_secret(service_.get(), value.get());
}

KeyringAnswer<SecretBytes> KeyringSession::decode(GVariant* structure) const {
  const ValuePointer value(secret_service_decode_dbus_secret(service_.get(), structure));
  if (!value) return KeyringFailure::noAnswer;
  gsize length = 0;
  const gchar* bytes = secret_value_get(value.get(), &length);
  return SecretBytes(bytesOf({bytes, length}));
}

}  // namespace vantorel
