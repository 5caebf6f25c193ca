// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/PortalSettings.h"

#include <QDBusVariant>
#include <QVariant>
#include <utility>

#include "platform/linux/bus/SessionBus.h"

namespace vantorel {
namespace {

constexpr auto portalService = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto portalInterface = "org.freedesktop.portal.Settings";
constexpr auto appearance = "org.freedesktop.appearance";
constexpr auto desktopInterface = "org.gnome.desktop.interface";

/// Some portals wrap what they answer once more.
QVariant unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value;
}

}  // namespace

PortalSettings::PortalSettings(SessionBus& bus, PortalColorScheme& portal) : bus_(bus) {
  connect(&bus_, &SessionBus::rejoined, this, [this] { joinBus(); });
  joinBus();
  portal.observeOthers(
      life_.guard([this](const PortalColorScheme::OtherSettings& told) { take(told); }));
}

PortalSettings::~PortalSettings() = default;

std::string PortalSettings::theme() const {
  const std::lock_guard lock(mutex_);
  return theme_;
}

std::string PortalSettings::iconTheme() const {
  const std::lock_guard lock(mutex_);
  return iconTheme_;
}

void PortalSettings::joinBus() {
  auto bus = bus_.connection();
  if (!bus) return;
  bus->connect(portalService, portalPath, portalInterface, QStringLiteral("SettingChanged"), this,
               SLOT(settingChanged(QDBusMessage)));
}

void PortalSettings::settingChanged(const QDBusMessage& signal) {
  const auto arguments = signal.arguments();
  if (arguments.size() != 3) return;
  const auto space = arguments[0].toString();
  const auto name = arguments[1].toString();
  const auto value = unwrapped(arguments[2]);
  const auto is = [&](const char* wantedSpace, const char* wantedName) {
    return space == QLatin1String(wantedSpace) && name == QLatin1String(wantedName);
  };
  PortalColorScheme::OtherSettings told;
  if (is(appearance, "contrast")) told.contrast = value.toUInt();
  if (is(desktopInterface, "enable-animations")) told.animations = value.toBool();
  if (is(desktopInterface, "gtk-theme")) told.theme = value.toString().toStdString();
  if (is(desktopInterface, "icon-theme")) told.iconTheme = value.toString().toStdString();
  take(told);
}

void PortalSettings::take(const PortalColorScheme::OtherSettings& told) {
  if (told.contrast) highContrast_ = *told.contrast == 1;
  if (told.animations) reduceMotion_ = !*told.animations;
  {
    const std::lock_guard lock(mutex_);
    if (told.theme) theme_ = *told.theme;
    if (told.iconTheme) iconTheme_ = *told.iconTheme;
  }
  observers_.notify();
}

}  // namespace vantorel
