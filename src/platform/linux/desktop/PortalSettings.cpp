#include "platform/linux/desktop/PortalSettings.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
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

PortalSettings::PortalSettings(SessionBus& bus) : bus_(bus) {
  portalWatcher_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
  portalWatcher_.addWatchedService(portalService);
  connect(&portalWatcher_, &QDBusServiceWatcher::serviceRegistered, this, [this] { askAll(); });
  connect(&bus_, &SessionBus::rejoined, this, [this] { joinBus(); });
  joinBus();
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
  portalWatcher_.setConnection(*bus);
  bus->connect(portalService, portalPath, portalInterface, QStringLiteral("SettingChanged"), this,
               SLOT(settingChanged(QDBusMessage)));
  askAll();
}

void PortalSettings::askAll() {
  ask(appearance, QStringLiteral("contrast"));
  for (const auto* name : {"enable-animations", "gtk-theme", "icon-theme"})
    ask(desktopInterface, name);
}

/// Without starting a portal for it: where there is one, it runs or will. A portal that refuses the
/// closed process still tells of changes.
void PortalSettings::ask(const QString& space, const QString& name) {
  const auto bus = bus_.connection();
  if (!bus) return;
  auto call = QDBusMessage::createMethodCall(portalService, portalPath, portalInterface,
                                             QStringLiteral("Read"));
  call.setAutoStartService(false);
  call << space << name;
  auto* pending = new QDBusPendingCallWatcher(bus->asyncCall(call), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, space, name] {
    const QDBusPendingReply<QVariant> reply = *pending;
    pending->deleteLater();
    if (!reply.isError()) take(space, name, reply.value());
  });
}

void PortalSettings::settingChanged(const QDBusMessage& signal) {
  const auto arguments = signal.arguments();
  if (arguments.size() != 3) return;
  take(arguments[0].toString(), arguments[1].toString(), arguments[2]);
}

void PortalSettings::take(const QString& space, const QString& name, const QVariant& value) {
  const auto said = unwrapped(value);
  if (space == QLatin1String(appearance) && name == QLatin1String("contrast")) {
    highContrast_ = said.toUInt() == 1;
  } else if (space != QLatin1String(desktopInterface)) {
    return;
  } else if (name == QLatin1String("enable-animations")) {
    reduceMotion_ = said.typeId() == QMetaType::Bool && !said.toBool();
  } else {
    const std::lock_guard lock(mutex_);
    if (name == QLatin1String("gtk-theme")) theme_ = said.toString().toStdString();
    if (name == QLatin1String("icon-theme")) iconTheme_ = said.toString().toStdString();
  }
  observers_.notify();
}

}  // namespace vantorel
