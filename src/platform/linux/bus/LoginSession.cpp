// SPDX-License-Identifier: MIT
#include "platform/linux/bus/LoginSession.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "platform/linux/glib/BusConnection.h"
#include "platform/linux/glib/GlibThread.h"

namespace vantorel {
namespace {

// For an answer, and for a manager that is being started anew.
constexpr std::chrono::seconds patience{5};
constexpr int patienceMilliseconds = 5'000;

constexpr const char* manager = "org.freedesktop.login1";
/// The caller's own session; for one outside of all sessions the one that its user sees.
constexpr const char* sessionPath = "/org/freedesktop/login1/session/auto";
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* busName = "org.freedesktop.DBus";

bool isTrue(GVariant* reply) {
  GVariant* inner = nullptr;
  g_variant_get(reply, "(v)", &inner);
  const VariantPointer value(inner);
  return g_variant_is_of_type(inner, G_VARIANT_TYPE_BOOLEAN) != FALSE &&
         g_variant_get_boolean(inner) != FALSE;
}

bool isOf(const GError* error, std::initializer_list<GDBusError> codes) {
  return std::any_of(codes.begin(), codes.end(), [=](GDBusError code) {
    return g_error_matches(error, G_DBUS_ERROR, code) != FALSE;
  });
}

bool isNobodyThere(const GError* error) {
  return isOf(error, {G_DBUS_ERROR_SERVICE_UNKNOWN, G_DBUS_ERROR_NAME_HAS_NO_OWNER});
}

/// A manager that is there and has nothing to say of this session.
bool isNothingKnown(const GError* error) {
  if (isOf(error, {G_DBUS_ERROR_UNKNOWN_OBJECT, G_DBUS_ERROR_UNKNOWN_INTERFACE,
                   G_DBUS_ERROR_UNKNOWN_METHOD, G_DBUS_ERROR_UNKNOWN_PROPERTY,
                   G_DBUS_ERROR_INVALID_ARGS, G_DBUS_ERROR_ACCESS_DENIED})) {
    return true;
  }
  const TextPointer name(g_dbus_error_get_remote_error(error));
  return name && g_str_has_prefix(name.get(), manager) != FALSE;  // that it has no such session
}

}  // namespace

LoginSession::LoginSession(std::function<void(bool isLocked)> told)
    : told_(std::move(told)),
      thread_(std::make_unique<GlibThread>("log-in session", [this] { leave(); })) {
  thread_->post([this] { join(); });
}

LoginSession::~LoginSession() = default;

void LoginSession::join() {
  const TextPointer address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
  if (!address) return;
  const auto deadline = std::chrono::steady_clock::now() + patience;
  connection_ = openBusConnection(
      address.get(), [&](const GlibLoop::Start& start) { return thread_->await(deadline, start); });
  if (!connection_) return;
  questions_.reset(g_cancellable_new());
  const auto askAgain = [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                           GVariant*, gpointer self) { static_cast<LoginSession*>(self)->ask(); };
  // Of any session: which one is the own one the manager says when it is asked.
  hear(manager, properties, "PropertiesChanged", sessionInterface, askAgain);
  hear(busName, busName, "NameOwnerChanged", manager, askAgain);
  closed_ = g_signal_connect(connection_.get(), "closed", G_CALLBACK(busClosed), this);
  ask();
}

void LoginSession::busClosed(GDBusConnection* /*bus*/, gboolean /*byTheBus*/, GError* /*error*/,
                             LoginSession* self) {
  self->told_(false);
}

void LoginSession::hear(const char* sender, const char* interface, const char* signal,
                        const char* argument, GDBusSignalCallback callback) {
  subscriptions_.push_back(g_dbus_connection_signal_subscribe(
      connection_.get(), sender, interface, signal, nullptr, argument, G_DBUS_SIGNAL_FLAGS_NONE,
      callback, this, nullptr));
}

/// The manager answers in the order of the questions, so that the last answer holds.
void LoginSession::ask() {
  ++openQuestions_;
  g_dbus_connection_call(
      connection_.get(), manager, sessionPath, properties, "Get",
      g_variant_new("(ss)", sessionInterface, "LockedHint"), G_VARIANT_TYPE("(v)"),
      G_DBUS_CALL_FLAGS_NO_AUTO_START, patienceMilliseconds, questions_.get(),
      [](GObject* connection, GAsyncResult* result, gpointer self) {
        GError* raw = nullptr;
        const VariantPointer reply(
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &raw));
        const ErrorPointer error(raw);
        // Cancelled when this ends.
        if (g_error_matches(raw, G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE) return;
        static_cast<LoginSession*>(self)->answered(reply.get(), raw);
      },
      this);
}

/// A question without an answer unlocks nothing.
void LoginSession::answered(GVariant* reply, const GError* error) {
  --openQuestions_;
  if (reply != nullptr || isNothingKnown(error)) {
    awaySince_.reset();
    return told_(reply != nullptr && isTrue(reply));
  }
  // The end of the bus was told already.
  if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CLOSED) != FALSE) return;
  if (!isNobodyThere(error)) {
    awaySince_.reset();
  } else {
    const auto now = std::chrono::steady_clock::now();
    if (!awaySince_) awaySince_ = now;
    if (now - *awaySince_ >= patience) return told_(false);
  }
  if (openQuestions_ == 0) askLater();
}

void LoginSession::askLater() {
  forgetToAsk();
  later_ = g_timeout_source_new(patienceMilliseconds);
  const auto due = [](gpointer object) -> gboolean {
    auto* self = static_cast<LoginSession*>(object);
    self->forgetToAsk();
    self->ask();
    return G_SOURCE_REMOVE;
  };
  g_source_set_callback(later_, due, this, nullptr);
  g_source_attach(later_, g_main_context_get_thread_default());
}

void LoginSession::forgetToAsk() {
  if (later_ == nullptr) return;
  g_source_destroy(later_);
  g_source_unref(std::exchange(later_, nullptr));
}

void LoginSession::leave() {
  if (!connection_) return;
  forgetToAsk();
  g_cancellable_cancel(questions_.get());
  for (const guint subscription : subscriptions_) {
    g_dbus_connection_signal_unsubscribe(connection_.get(), subscription);
  }
  g_signal_handler_disconnect(connection_.get(), closed_);
  connection_.reset();
}

}  // namespace vantorel
