#include "platform/linux/desktop/PortalColorScheme.h"

#include <climits>
#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/glib/GlibThread.h"
#include "platform/linux/glib/SessionBusAddress.h"

namespace vantorel {
namespace {

/// The number within as many variants as the portal has put around it.
std::optional<std::uint32_t> number(VariantPointer value) {
  while (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARIANT) != FALSE) {
    value.reset(g_variant_get_variant(value.get()));
  }
  if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32) == FALSE) return std::nullopt;
  return g_variant_get_uint32(value.get());
}

}  // namespace

PortalColorScheme::PortalColorScheme(Dispatch& dispatch, std::function<void()> asked)
    : thread_(std::make_unique<GlibThread>("portal", [] {})) {
  auto tell =
      onMainQueue(dispatch, life_.guard([this](std::uint32_t scheme) { answered(scheme); }));
  thread_->post([this, asked = std::move(asked), tell = std::move(tell)] {
    const auto scheme = ask();
    asked();
    {
      const std::lock_guard lock(mutex_);
      asked_ = true;
    }
    changed_.notify_all();
    if (scheme) tell(*scheme);
  });
}

PortalColorScheme::~PortalColorScheme() = default;

void PortalColorScheme::waitUntilAsked() {
  std::unique_lock lock(mutex_);
  changed_.wait_until(lock, deadline_, [this] { return asked_; });
}

void PortalColorScheme::observe(std::function<void(std::uint32_t)> handler) {
  handler_ = std::move(handler);
  if (answer_) handler_(*answer_);
}

void PortalColorScheme::answered(std::uint32_t scheme) {
  answer_ = scheme;
  if (handler_) handler_(scheme);
}

/// Without starting a portal for it: where there is one, it runs or will.
std::optional<std::uint32_t> PortalColorScheme::ask() {
  const auto address = sessionBusAddress(processEnvironment);
  if (!address) return std::nullopt;
  // A connection of its own: whoever gives up joining with the one that GIO shares makes it fail
  // for all who wait for it, and the keyring waits longer.
  const auto joined = thread_->await(
      deadline_, [&](GCancellable* cancellable, GAsyncReadyCallback done, gpointer slot) {
        g_dbus_connection_new_for_address(
            address->c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, cancellable, done, slot);
      });
  const ObjectPointer<GDBusConnection> bus(
      g_dbus_connection_new_for_address_finish(joined.get(), nullptr));
  if (!bus) return std::nullopt;
  const auto result = thread_->await(deadline_, [&](GCancellable* cancellable,
                                                    GAsyncReadyCallback done, gpointer slot) {
    g_dbus_connection_call(
        bus.get(), "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
        "org.freedesktop.portal.Settings", "Read",
        g_variant_new("(ss)", "org.freedesktop.appearance", "color-scheme"), G_VARIANT_TYPE("(v)"),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, INT_MAX, cancellable, done, slot);
  });
  const VariantPointer reply(g_dbus_connection_call_finish(bus.get(), result.get(), nullptr));
  if (!reply) return std::nullopt;
  return number(VariantPointer(g_variant_get_child_value(reply.get(), 0)));
}

}  // namespace vantorel
