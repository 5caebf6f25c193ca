// SPDX-License-Identifier: MIT
#include "platform/linux/portal/PortalBus.h"

#include <memory>
#include <string_view>
#include <utility>

#include "platform/ApplicationId.h"
#include "platform/linux/glib/BusConnection.h"
#include "platform/linux/glib/SessionBusAddress.h"

namespace vantorel {
namespace {

constexpr const char* portalService = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";

using Ended = std::function<void(GVariant* reply, const GError* error)>;

/// What the bus calls when a question has ended; takes the callback over.
void ended(GObject* connection, GAsyncResult* result, gpointer callback) {
  const std::unique_ptr<Ended> heard(static_cast<Ended*>(callback));
  GError* raw = nullptr;
  const VariantPointer reply(
      g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &raw));
  const ErrorPointer error(raw);
  (*heard)(reply.get(), raw);
}

}  // namespace

PortalBus::~PortalBus() {
  news_.clear();  // who would hear of it has ended
  leave();
}

void PortalBus::onNews(std::function<void()> came, std::function<void()> left) {
  news_.push_back({std::move(came), std::move(left)});
}

void PortalBus::onSignal(const char* interface, const char* signal, Heard heard) {
  signals_.push_back({interface, signal, std::move(heard)});
  if (connection_) listen(signals_.back());
}

bool PortalBus::join(Deadline deadline) {
  leave();
  const auto address = sessionBusAddress(processEnvironment);
  if (!address) return false;
  // A connection of its own: whoever gives up joining with the one that GIO shares makes it fail
  // for all who wait for it, and the keyring waits longer.
  connection_ = openBusConnection(
      *address, [&](const GlibLoop::Start& start) { return thread_.await(deadline, start); });
  if (!connection_) return false;
  questions_.reset(g_cancellable_new());
  for (const auto& signal : signals_) listen(signal);
  watch();
  return true;
}

void PortalBus::watch() {
  isLooking_ = true;
  ++open_;
  watch_ = g_bus_watch_name_on_connection(
      connection_.get(), portalService, G_BUS_NAME_WATCHER_FLAGS_NONE,
      [](GDBusConnection*, const gchar*, const gchar*, gpointer self) {
        static_cast<PortalBus*>(self)->appeared();
      },
      [](GDBusConnection*, const gchar*, gpointer self) {
        static_cast<PortalBus*>(self)->vanished();
      },
      this, nullptr);
}

void PortalBus::listen(const Signal& signal) {
  const auto heard = [](GDBusConnection*, const gchar*, const gchar* object, const gchar*,
                        const gchar*, GVariant* arguments,
                        gpointer slot) { (*static_cast<const Heard*>(slot))(object, arguments); };
  subscriptions_.push_back(g_dbus_connection_signal_subscribe(
      connection_.get(), portalService, signal.interface, signal.name, nullptr, nullptr,
      G_DBUS_SIGNAL_FLAGS_NONE, heard, const_cast<Heard*>(&signal.heard), nullptr));
}

/// A portal lets a program that no sandbox names say which one it is, before all else; an older one
/// does not know the question.
void PortalBus::appeared() {
  vanished();
  isOwned_ = true;
  auto* const name = g_variant_new_string(applicationId::name);
  auto* const options = g_variant_new_array(G_VARIANT_TYPE("{sv}"), nullptr, 0);
  call(portalService, portalPath, "org.freedesktop.host.portal.Registry", "Register",
       g_variant_new("(@s@a{sv})", name, options), [this](GVariant* /*reply*/) {
         if (!isOwned_) return;  // gone meanwhile
         isThere_ = true;
         for (const auto& each : news_) each.came();
       });
}

void PortalBus::vanished() {
  if (std::exchange(isLooking_, false)) --open_;
  if (isOwned_) forget();
}

void PortalBus::forget() {
  isOwned_ = false;
  isThere_ = false;
  isRefused_ = false;
  for (const auto& each : news_) each.left();
}

std::string PortalBus::ownName() const {
  const gchar* name = connection_ ? g_dbus_connection_get_unique_name(connection_.get()) : nullptr;
  return name != nullptr ? name : std::string();
}

void PortalBus::ask(const char* interface, const char* method, GVariant* arguments,
                    Answered answered) {
  call(portalService, portalPath, interface, method, arguments, std::move(answered));
}

void PortalBus::askGnome(const char* interface, Answered answered) {
  call("org.freedesktop.impl.portal.desktop.gnome", portalPath, "org.freedesktop.DBus.Properties",
       "GetAll", g_variant_new("(s)", interface), std::move(answered));
}

void PortalBus::start(Answered answered) {
  constexpr const char* bus = "org.freedesktop.DBus";
  call(bus, "/org/freedesktop/DBus", bus, "StartServiceByName",
       g_variant_new("(su)", portalService, 0U),
       [this, answered = std::move(answered)](GVariant* reply) {
         // One that the bus cannot start may have come by itself.
         if (reply || !isOwned_) answered(reply);
       });
}

void PortalBus::call(const char* program, const char* object, const char* interface,
                     const char* method, GVariant* arguments, Answered answered) {
  const VariantPointer kept(g_variant_ref_sink(arguments));
  if (!connection_) {
    // In a later turn, like every answer.
    return thread_.post(life_.guard([answered = std::move(answered)] { answered(nullptr); }));
  }
  ++open_;
  const bool isPortals = std::string_view(program) == portalService;
  auto callback = std::make_unique<Ended>(life_.guard(
      [this, isPortals, answered = std::move(answered)](GVariant* reply, const GError* error) {
        if (isPortals && g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED)) {
          isRefused_ = true;
        }
        answered(reply);
        --open_;
      }));
  constexpr int ordinaryPatience = -1;
  g_dbus_connection_call(connection_.get(), program, object, interface, method, kept.get(), nullptr,
                         G_DBUS_CALL_FLAGS_NO_AUTO_START, ordinaryPatience, questions_.get(), ended,
                         callback.release());
}

void PortalBus::send(const std::string& object, const char* interface, const char* method) {
  if (!connection_) return;
  g_dbus_connection_call(connection_.get(), portalService, object.c_str(), interface, method,
                         nullptr, nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr,
                         nullptr);
}

void PortalBus::leave() {
  life_.end();
  isLooking_ = false;
  open_ = 0;
  forget();
  if (!connection_) return;
  g_bus_unwatch_name(watch_);
  g_cancellable_cancel(questions_.get());
  for (const guint each : subscriptions_) {
    g_dbus_connection_signal_unsubscribe(connection_.get(), each);
  }
  subscriptions_.clear();
  connection_.reset();
}

}  // namespace vantorel
