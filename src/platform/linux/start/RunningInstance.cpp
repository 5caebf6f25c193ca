// SPDX-License-Identifier: MIT
#include "platform/linux/start/RunningInstance.h"

#include <algorithm>
#include <climits>
#include <string_view>
#include <utility>

#include "platform/ApplicationId.h"
#include "platform/linux/glib/BusConnection.h"
#include "platform/linux/glib/SessionBusAddress.h"

namespace vantorel {
namespace {

/// What the window system wants to know about the user's action behind a request.
GVariant* platformData(const EnvironmentLookup& lookup) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a{sv}"));
  for (const auto& [variable, key] : {std::pair("DESKTOP_STARTUP_ID", "desktop-startup-id"),
                                      std::pair("XDG_ACTIVATION_TOKEN", "activation-token")}) {
    const auto value = lookup(variable);
    if (!value || g_utf8_validate(value->c_str(), -1, nullptr) == FALSE) continue;
    g_variant_builder_add(&builder, "{sv}", key, g_variant_new_string(value->c_str()));
  }
  return g_variant_builder_end(&builder);
}

/// A method of `org.freedesktop.Application`, and what it is called with.
struct MethodCall {
  const char* method;
  VariantPointer arguments;
};

/// What goes with the action: one text, or nothing.
GVariant* parametersOf(const ActionRequest& request) {
  if (request.argument.empty()) return g_variant_new_array(G_VARIANT_TYPE_VARIANT, nullptr, 0);
  GVariant* parameter = g_variant_new_variant(g_variant_new_string(request.argument.c_str()));
  return g_variant_new_array(G_VARIANT_TYPE_VARIANT, &parameter, 1);
}

MethodCall callFor(const ActionRequest& request, const EnvironmentLookup& lookup) {
  if (request.action.empty()) {
    GVariant* data = platformData(lookup);
    return {"Activate", VariantPointer(g_variant_ref_sink(g_variant_new_tuple(&data, 1)))};
  }
  GVariant* arguments = g_variant_new("(s@av@a{sv})", request.action.c_str(), parametersOf(request),
                                      platformData(lookup));
  return {"ActivateAction", VariantPointer(g_variant_ref_sink(arguments))};
}

using Outcome = AwaitedRequest::Outcome;

AwaitedRequest meaningOf(GError* error) {
  if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE ||
      g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE) {
    return {Outcome::unanswered};  // it lies in the queue of somebody busy
  }
  const TextPointer text(g_dbus_error_get_remote_error(error));
  const std::string_view name(text ? text.get() : "");
  if (name == "org.freedesktop.DBus.Error.ServiceUnknown" ||
      name == "org.freedesktop.DBus.Error.NameHasNoOwner" ||
      name == "org.freedesktop.DBus.Error.NoReply") {
    return {Outcome::notRunning};
  }
  if (name == notDoneError) {
    g_dbus_error_strip_remote_error(error);
    return {Outcome::failed, error->message};
  }
  return {name.empty() ? Outcome::noBus : Outcome::refused};
}

AwaitedRequest send(GlibLoop& loop, Deadline deadline, GDBusConnection* connection,
                    const MethodCall& call) {
  const auto result =
      loop.await(deadline, [&](GCancellable* cancellable, GAsyncReadyCallback done, gpointer slot) {
        g_dbus_connection_call(connection, applicationId::name, applicationId::objectPath,
                               applicationId::interface, call.method, call.arguments.get(), nullptr,
                               G_DBUS_CALL_FLAGS_NO_AUTO_START, INT_MAX, cancellable, done, slot);
      });
  GError* error = nullptr;
  const VariantPointer reply(g_dbus_connection_call_finish(connection, result.get(), &error));
  const ErrorPointer failed(error);
  return failed ? meaningOf(failed.get()) : AwaitedRequest{Outcome::done};
}

}  // namespace

ForwardResult forwardToRunningInstance(const ActionRequest& request,
                                       const EnvironmentLookup& lookup) {
  switch (awaitRunningInstance(request, lookup, forwardTimeLimit).outcome) {
    case Outcome::done:
    case Outcome::unanswered:
      return ForwardResult::forwarded;
    case Outcome::notRunning:
      return ForwardResult::notRunning;
    case Outcome::failed:
    case Outcome::refused:
      return ForwardResult::refused;
    case Outcome::noBus:
      break;
  }
  return ForwardResult::noBus;
}

AwaitedRequest awaitRunningInstance(const ActionRequest& request, const EnvironmentLookup& lookup,
                                    std::chrono::seconds timeLimit) {
  const auto begin = std::chrono::steady_clock::now();
  const auto address = sessionBusAddress(lookup);
  if (!address) return {Outcome::noBus};
  if (g_utf8_validate(request.argument.c_str(), -1, nullptr) == FALSE) return {Outcome::refused};
  GlibLoop loop;
  const GlibLoop::Served served(loop);
  const auto connection = openBusConnection(*address, [&](const GlibLoop::Start& start) {
    return loop.await(begin + std::min(timeLimit, forwardTimeLimit), start);
  });
  if (!connection) return {Outcome::noBus};
  return send(loop, begin + timeLimit, connection.get(), callFor(request, lookup));
}

}  // namespace vantorel
