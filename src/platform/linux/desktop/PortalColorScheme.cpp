// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/PortalColorScheme.h"

#include <climits>
#include <utility>

#include "platform/MainQueue.h"
#include "platform/linux/glib/GlibThread.h"
#include "platform/linux/glib/SessionBusAddress.h"

namespace vantorel {
namespace {

constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* desktopInterface = "org.gnome.desktop.interface";

/// What is within as many variants as the portal has put around it.
VariantPointer unwrapped(VariantPointer value) {
  while (value && g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARIANT) != FALSE) {
    value.reset(g_variant_get_variant(value.get()));
  }
  return value;
}

std::optional<std::uint32_t> number(const VariantPointer& value) {
  if (!value || g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32) == FALSE) return {};
  return g_variant_get_uint32(value.get());
}

std::optional<bool> truth(const VariantPointer& value) {
  if (!value || g_variant_is_of_type(value.get(), G_VARIANT_TYPE_BOOLEAN) == FALSE) return {};
  return g_variant_get_boolean(value.get()) != FALSE;
}

std::optional<std::string> text(const VariantPointer& value) {
  if (!value || g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING) == FALSE) return {};
  return g_variant_get_string(value.get(), nullptr);
}

}  // namespace

PortalColorScheme::PortalColorScheme(Dispatch& dispatch, Questions questions,
                                     std::function<void()> asked)
    : thread_(std::make_unique<GlibThread>("portal", [] {})) {
  auto tell =
      onMainQueue(dispatch, life_.guard([this](const Answers& answers) { answered(answers); }));
  thread_->post([this, questions, asked = std::move(asked), tell = std::move(tell)] {
    const auto answers = ask(questions);
    asked();
    {
      const std::lock_guard lock(mutex_);
      asked_ = true;
    }
    changed_.notify_all();
    tell(answers);
  });
}

PortalColorScheme::~PortalColorScheme() = default;

void PortalColorScheme::waitUntilAsked() {
  std::unique_lock lock(mutex_);
  changed_.wait_until(lock, deadline_, [this] { return asked_; });
}

void PortalColorScheme::observe(std::function<void(std::uint32_t)> handler) {
  handler_ = std::move(handler);
  if (answers_ && answers_->scheme) handler_(*answers_->scheme);
}

void PortalColorScheme::observeOthers(std::function<void(const OtherSettings&)> handler) {
  othersHandler_ = std::move(handler);
  if (answers_) othersHandler_(answers_->others);
}

void PortalColorScheme::answered(const Answers& answers) {
  answers_ = answers;
  if (handler_ && answers.scheme) handler_(*answers.scheme);
  if (othersHandler_) othersHandler_(answers.others);
}

/// Without starting a portal for it: where there is one, it runs or will.
PortalColorScheme::Answers PortalColorScheme::ask(Questions questions) {
  const auto address = sessionBusAddress(processEnvironment);
  if (!address) return {};
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
  if (!bus) return {};
  const auto read = [&](const char* space, const char* name) {
    const auto result = thread_->await(deadline_, [&](GCancellable* cancellable,
                                                      GAsyncReadyCallback done, gpointer slot) {
      g_dbus_connection_call(bus.get(), "org.freedesktop.portal.Desktop",
                             "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings",
                             "Read", g_variant_new("(ss)", space, name), G_VARIANT_TYPE("(v)"),
                             G_DBUS_CALL_FLAGS_NO_AUTO_START, INT_MAX, cancellable, done, slot);
    });
    const VariantPointer reply(g_dbus_connection_call_finish(bus.get(), result.get(), nullptr));
    return reply ? unwrapped(VariantPointer(g_variant_get_child_value(reply.get(), 0))) : nullptr;
  };
  Answers answers{.scheme = number(read(appearance, "color-scheme")), .others = {}};
  if (questions == Questions::allSettings) {
    answers.others = {.contrast = number(read(appearance, "contrast")),
                      .animations = truth(read(desktopInterface, "enable-animations")),
                      .theme = text(read(desktopInterface, "gtk-theme")),
                      .iconTheme = text(read(desktopInterface, "icon-theme"))};
  }
  return answers;
}

}  // namespace vantorel
