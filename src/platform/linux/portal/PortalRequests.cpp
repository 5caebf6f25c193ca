// SPDX-License-Identifier: MIT
#include "platform/linux/portal/PortalRequests.h"

#include <algorithm>
#include <utility>

namespace vantorel {
namespace {

constexpr const char* requestInterface = "org.freedesktop.portal.Request";

/// Where a portal puts what this connection requests.
std::string objectPath(std::string ownName, const std::string& token) {
  std::erase(ownName, ':');
  std::replace(ownName.begin(), ownName.end(), '.', '_');
  return "/org/freedesktop/portal/desktop/request/" + ownName + "/" + token;
}

}  // namespace

GVariant* portalOptions(const std::map<std::string, std::string>& texts) {
  GVariantBuilder options;
  g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
  for (const auto& [name, text] : texts) {
    g_variant_builder_add(&options, "{sv}", name.c_str(), g_variant_new_string(text.c_str()));
  }
  return g_variant_builder_end(&options);
}

PortalRequests::PortalRequests(PortalBus& bus) : bus_(bus) {
  bus_.onSignal(
      requestInterface, "Response",
      [this](const std::string& object, GVariant* arguments) { heard(object, arguments); });
}

void PortalRequests::make(const char* interface, const char* method, const Arguments& arguments,
                          Responded responded) {
  giveUp();
  const auto token = "vantorel" + std::to_string(++made_);
  // Known beforehand: the response may come before the method's own reply.
  object_ = objectPath(bus_.ownName(), token);
  responded_ = std::move(responded);
  bus_.ask(interface, method, arguments(token), life_.guard([this](GVariant* reply) {
    if (!reply) finish(nullptr);
  }));
}

void PortalRequests::giveUp() {
  life_.end();
  responded_ = nullptr;
  if (object_.empty()) return;
  if (bus_.isThere()) bus_.send(object_, requestInterface, "Close");
  object_.clear();
}

void PortalRequests::heard(const std::string& object, GVariant* arguments) {
  if (object_.empty() || object != object_) return;
  if (!g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ua{sv})"))) return finish(nullptr);
  finish(VariantPointer(g_variant_get_child_value(arguments, 1)).get());
}

void PortalRequests::finish(GVariant* results) {
  life_.end();
  object_.clear();
  if (const auto responded = std::exchange(responded_, nullptr)) responded(results);
}

}  // namespace vantorel
