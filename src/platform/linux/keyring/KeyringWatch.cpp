// SPDX-License-Identifier: MIT
#include "platform/linux/keyring/KeyringWatch.h"

#include <climits>
#include <string_view>
#include <utility>

namespace vantorel {
namespace {

constexpr const char* serviceInterface = "org.freedesktop.Secret.Service";
constexpr const char* collectionInterface = "org.freedesktop.Secret.Collection";
constexpr const char* busName = "org.freedesktop.DBus";
constexpr guint secondsToAskAgain = 10;

using Answered = std::function<void(GVariant* reply)>;

/// What the bus calls when the question has ended; takes the callback over.
void questionEnded(GObject* connection, GAsyncResult* result, gpointer callback) {
  const std::unique_ptr<Answered> answered(static_cast<Answered*>(callback));
  GError* error = nullptr;
  const VariantPointer reply(
      g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error));
  const ErrorPointer discarded(error);
  (*answered)(reply.get());
}

bool hasOwner(GVariant* nameOwnerChanged) {
  if (g_variant_is_of_type(nameOwnerChanged, G_VARIANT_TYPE("(sss)")) == FALSE) return false;
  const gchar* owner = nullptr;
  g_variant_get(nameOwnerChanged, "(&s&s&s)", nullptr, nullptr, &owner);
  return !std::string_view(owner).empty();
}

}  // namespace

KeyringWatch::KeyringWatch(KeyringBus& bus, std::function<void(KeyringNews)> heard,
                           std::function<void()> replaced)
    : bus_(bus), heard_(std::move(heard)), replaced_(std::move(replaced)) {}

KeyringWatch::~KeyringWatch() { end(); }

void KeyringWatch::listen() {
  GDBusConnection* connection = bus_.connection();
  if (!connection || connection == connection_.get()) return;
  end();
  connection_.reset(G_DBUS_CONNECTION(g_object_ref(connection)));
  const auto changed = [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                          GVariant*, gpointer self) {
    static_cast<KeyringWatch*>(self)->heard_(KeyringNews::changed);
  };
  const auto made = [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                       GVariant*, gpointer self) {
    static_cast<KeyringWatch*>(self)->heard_(KeyringNews::arrived);
  };
  const auto came = [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                       GVariant* arguments, gpointer self) {
    if (!hasOwner(arguments)) return;
    const auto& watch = *static_cast<KeyringWatch*>(self);
    watch.replaced_();
    watch.heard_(KeyringNews::arrived);
  };
  // Services differ in which of the first two they send for a lock.
  hear(KeyringBus::serviceName, "org.freedesktop.DBus.Properties", "PropertiesChanged",
       collectionInterface, changed);
  hear(KeyringBus::serviceName, serviceInterface, "CollectionChanged", nullptr, changed);
  hear(KeyringBus::serviceName, serviceInterface, "CollectionCreated", nullptr, made);
  hear(busName, busName, "NameOwnerChanged", KeyringBus::serviceName, came);
}

void KeyringWatch::hear(const char* sender, const char* interface, const char* signal,
                        const char* argument, GDBusSignalCallback callback) {
  subscriptions_.push_back(g_dbus_connection_signal_subscribe(
      connection_.get(), sender, interface, signal, nullptr, argument, G_DBUS_SIGNAL_FLAGS_NONE,
      callback, this, nullptr));
}

void KeyringWatch::ask() {
  listen();
  if (!connection_ || question_) return;
  later_.reset();
  question_.reset(g_cancellable_new());
  auto answer = std::make_unique<Answered>(life_.guard([this](GVariant* reply) {
    question_.reset();
    answered(reply);
  }));
  g_dbus_connection_call(connection_.get(), KeyringBus::serviceName, KeyringBus::servicePath,
                         serviceInterface, "ReadAlias", g_variant_new("(s)", "default"),
                         G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, INT_MAX,
                         question_.get(), questionEnded, answer.release());
}

void KeyringWatch::answered(GVariant* reply) {
  if (!reply) return;  // nobody is there: who comes is announced
  const gchar* path = nullptr;
  g_variant_get(reply, "(&o)", &path);
  if (std::string_view(path) == "/") return askLater();
  heard_(KeyringNews::changed);
}

void KeyringWatch::askLater() {
  later_.reset(g_timeout_source_new_seconds(secondsToAskAgain));
  g_source_set_callback(
      later_.get(),
      [](gpointer self) -> gboolean {
        static_cast<KeyringWatch*>(self)->ask();
        return G_SOURCE_REMOVE;
      },
      this, nullptr);
  g_source_attach(later_.get(), g_main_context_get_thread_default());
}

void KeyringWatch::end() {
  life_.end();
  later_.reset();
  if (question_) g_cancellable_cancel(question_.get());
  question_.reset();
  for (const guint subscription : subscriptions_) {
    g_dbus_connection_signal_unsubscribe(connection_.get(), subscription);
  }
  subscriptions_.clear();
  connection_.reset();
}

}  // namespace vantorel
