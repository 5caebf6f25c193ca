// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/DesktopColors.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>
#include <utility>

#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/desktop/PortalColorScheme.h"
#include "platform/linux/settings/ColorScheme.h"

namespace vantorel {
namespace {

constexpr auto portalService = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto portalInterface = "org.freedesktop.portal.Settings";
constexpr auto appearance = "org.freedesktop.appearance";
constexpr auto scheme = "color-scheme";

bool isDark(const QPalette& colors) {
  return colors.color(QPalette::Window).lightnessF() <
         colors.color(QPalette::WindowText).lightnessF();
}

QPalette darkColors() {
  const QColor window(0x2b, 0x2b, 0x2e);
  const QColor text(0xf2, 0xf2, 0xf2);
  const QColor faintText(0x96, 0x96, 0x99);
  const QColor accent(0xed, 0xa8, 0x29);
  QPalette colors(window);
  colors.setColor(QPalette::Window, window);
  colors.setColor(QPalette::Base, QColor(0x1f, 0x1f, 0x21));
  colors.setColor(QPalette::AlternateBase, window);
  colors.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3d));
  colors.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3a, 0x3d));
  colors.setColor(QPalette::Highlight, accent);
  colors.setColor(QPalette::HighlightedText, QColor(0x1f, 0x1f, 0x21));
  colors.setColor(QPalette::PlaceholderText, faintText);
  colors.setColor(QPalette::Link, accent);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                          QPalette::ToolTipText, QPalette::BrightText}) {
    colors.setColor(role, text);
    colors.setColor(QPalette::Disabled, role, faintText);
  }
  return colors;
}

std::optional<std::uint32_t> number(const QVariant& value) {
  // Some portals wrap what they answer once more.
  QVariant inner = value;
  while (inner.canConvert<QDBusVariant>()) inner = inner.value<QDBusVariant>().variant();
  bool isNumber = false;
  const auto found = inner.toUInt(&isNumber);
  return isNumber ? std::optional<std::uint32_t>(found) : std::nullopt;
}

}  // namespace

DesktopColors::DesktopColors(const DesktopSettings& settings, SessionBus& bus,
                             PortalColorScheme& portal, std::string environmentTheme)
    : settings_(settings),
      bus_(bus),
      environmentTheme_(std::move(environmentTheme)),
      toolkitColors_(QGuiApplication::palette()),
      observation_(settings.observe([this] { apply(); })) {
  portalWatcher_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
  portalWatcher_.addWatchedService(portalService);
  connect(&portalWatcher_, &QDBusServiceWatcher::serviceRegistered, this, [this] { askPortal(); });
  connect(&bus_, &SessionBus::rejoined, this, [this] { joinBus(); });
  joinBus();
  apply();
  portal.observe(life_.guard([this](std::uint32_t scheme) {
    if (!portal_) portal_ = scheme;  // what was heard later holds
    apply();
  }));
}

DesktopColors::~DesktopColors() = default;

void DesktopColors::joinBus() {
  auto bus = bus_.connection();
  if (!bus) return;
  portalWatcher_.setConnection(*bus);
  bus->connect(portalService, portalPath, portalInterface, QStringLiteral("SettingChanged"), this,
               SLOT(settingChanged(QDBusMessage)));
  askPortal();
}

/// Without starting a portal for it: where there is one, it runs or will. A portal that refuses the
/// closed process leaves what is known as it is, and still tells of changes.
void DesktopColors::askPortal() {
  const auto bus = bus_.connection();
  if (!bus) return;
  auto call = QDBusMessage::createMethodCall(portalService, portalPath, portalInterface,
                                             QStringLiteral("Read"));
  call.setAutoStartService(false);
  call << QString::fromLatin1(appearance) << QString::fromLatin1(scheme);
  auto* pending = new QDBusPendingCallWatcher(bus->asyncCall(call), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
    const QDBusPendingReply<QVariant> reply = *pending;
    pending->deleteLater();
    if (reply.isError()) return;
    portal_ = number(reply.value());
    apply();
  });
}

void DesktopColors::settingChanged(const QDBusMessage& signal) {
  const auto arguments = signal.arguments();
  if (arguments.size() != 3) return;
  if (arguments[0].toString() != QLatin1String(appearance)) return;
  if (arguments[1].toString() != QLatin1String(scheme)) return;
  portal_ = number(arguments[2]);
  apply();
}

void DesktopColors::apply() {
  if (isDark(toolkitColors_)) return;
  const bool dark = colorScheme(portal_, environmentTheme_, settings_.theme()) == ColorScheme::dark;
  if (dark == applied_) return;
  applied_ = dark;
  QGuiApplication::setPalette(dark ? darkColors() : toolkitColors_);
}

}  // namespace vantorel
