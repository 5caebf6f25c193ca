// SPDX-License-Identifier: MIT
#include "platform/linux/portal/SettingsReading.h"

#include <array>
#include <string_view>
#include <utility>

namespace vantorel {
namespace {

constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* desktopInterface = "org.gnome.desktop.interface";

/// What is within as many variants as the portal has put around it.
VariantPointer unwrapped(VariantPointer value) {
  while (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARIANT) != FALSE) {
    value.reset(g_variant_get_variant(value.get()));
  }
  return value;
}

void take(GVariant* value, std::optional<std::uint32_t>& number) {
  if (g_variant_is_of_type(value, G_VARIANT_TYPE_UINT32)) number = g_variant_get_uint32(value);
}

void take(GVariant* value, std::optional<bool>& truth) {
  if (g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN)) {
    truth = g_variant_get_boolean(value) != FALSE;
  }
}

void take(GVariant* value, std::optional<std::string>& text) {
  if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING)) {
    text = g_variant_get_string(value, nullptr);
  }
}

struct Setting {
  const char* space;
  const char* name;
  void (*take)(GVariant* value, PortalAnswers& answers);
};

template <auto member>
void takeInto(GVariant* value, PortalAnswers& answers) {
  take(value, answers.*member);
}

// The colours stand first: there are desktops where all else is told by others.
constexpr std::array settings = {
    Setting{appearance, "color-scheme", takeInto<&PortalAnswers::scheme>},
    Setting{appearance, "contrast", takeInto<&PortalAnswers::contrast>},
    Setting{desktopInterface, "enable-animations", takeInto<&PortalAnswers::animations>},
    Setting{desktopInterface, "gtk-theme", takeInto<&PortalAnswers::theme>},
    Setting{desktopInterface, "icon-theme", takeInto<&PortalAnswers::iconTheme>}};

}  // namespace

SettingsReading::SettingsReading(PortalBus& bus, PortalAnswers::Extent extent,
                                 std::function<void(const PortalAnswers&)> told)
    : bus_(bus), extent_(extent), told_(std::move(told)) {
  bus_.onNews([this] { ask(); }, [] {});
  bus_.onSignal(settingsInterface, "SettingChanged",
                [this](const std::string& /*object*/, GVariant* arguments) { changed(arguments); });
}

void SettingsReading::ask() {
  for (const auto& setting : settings) {
    bus_.ask(settingsInterface, "Read", g_variant_new("(ss)", setting.space, setting.name),
             [this, &setting](GVariant* reply) {
               if (!reply || !g_variant_is_of_type(reply, G_VARIANT_TYPE("(v)"))) return;
               setting.take(unwrapped(VariantPointer(g_variant_get_child_value(reply, 0))).get(),
                            answers_);
               told_(answers_);
             });
    if (extent_ == PortalAnswers::Extent::colors) return;
  }
}

void SettingsReading::changed(GVariant* arguments) {
  if (!g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ssv)"))) return;
  const gchar* space = nullptr;
  const gchar* name = nullptr;
  g_variant_get_child(arguments, 0, "&s", &space);
  g_variant_get_child(arguments, 1, "&s", &name);
  for (const auto& setting : settings) {
    if (std::string_view(space) != setting.space || std::string_view(name) != setting.name) {
      continue;
    }
    setting.take(unwrapped(VariantPointer(g_variant_get_child_value(arguments, 2))).get(),
                 answers_);
    told_(answers_);
  }
}

}  // namespace vantorel
