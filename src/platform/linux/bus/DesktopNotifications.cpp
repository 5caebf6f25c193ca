#include "platform/linux/bus/DesktopNotifications.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>
#include <utility>

#include "platform/ApplicationId.h"
#include "platform/linux/bus/SessionBus.h"

namespace vantorel {
namespace {

constexpr auto service = "org.freedesktop.Notifications";
constexpr auto path = "/org/freedesktop/Notifications";
constexpr auto actionKey = "act";
constexpr int untilSeen = 0;  // milliseconds; the service's word for "does not expire"

QDBusMessage call(const char* method) {
  return QDBusMessage::createMethodCall(service, path, service, QString::fromLatin1(method));
}

}  // namespace

DesktopNotifications::DesktopNotifications(SessionBus& bus) : bus_(bus) {}

void DesktopNotifications::post(const Notification& notification, std::function<void()> onAction) {
  auto bus = bus_.connection();
  if (!bus) return;
  listen(*bus);
  onAction_ = std::move(onAction);
  QStringList actions;
  if (!notification.action.empty()) {
    actions << QString::fromLatin1(actionKey) << QString::fromStdString(notification.action);
  }
  auto message = call("Notify");
  message << QStringLiteral("Vantorel") << shown_.value_or(0) << QString(applicationId::name)
          << QString::fromStdString(notification.title)
          << QString::fromStdString(notification.body).toHtmlEscaped() << actions
          << QVariantMap{{QStringLiteral("desktop-entry"), QString(applicationId::name)}}
          << untilSeen;
  const int number = ++posted_;
  auto* pending = new QDBusPendingCallWatcher(bus->asyncCall(message), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, number] {
    const QDBusPendingReply<unsigned> reply = *pending;
    pending->deleteLater();
    if (reply.isError()) return;
    // Meanwhile it may have been taken back, or followed by another.
    if (number == posted_) {
      shown_ = reply.value();
    } else {
      close(reply.value());
    }
  });
}

void DesktopNotifications::withdraw() {
  ++posted_;
  onAction_ = nullptr;
  if (const auto id = std::exchange(shown_, std::nullopt)) close(*id);
}

void DesktopNotifications::listen(QDBusConnection& bus) {
  if (listeningTo_ == bus.name()) return;
  listeningTo_ = bus.name();
  shown_.reset();
  bus.connect(service, path, service, QStringLiteral("ActionInvoked"), this,
              SLOT(actionInvoked(unsigned, QString)));
  bus.connect(service, path, service, QStringLiteral("NotificationClosed"), this,
              SLOT(notificationClosed(unsigned, unsigned)));
}

void DesktopNotifications::close(unsigned id) {
  const auto bus = bus_.connection();
  if (!bus) return;
  auto message = call("CloseNotification");
  message << id;
  bus->asyncCall(message);
}

void DesktopNotifications::actionInvoked(unsigned id, const QString& action) {
  if (shown_ != id || action != QLatin1String(actionKey)) return;
  if (const auto chosen = std::exchange(onAction_, nullptr)) chosen();
}

void DesktopNotifications::notificationClosed(unsigned id, unsigned /*reason*/) {
  if (shown_ == id) shown_.reset();
}

}  // namespace vantorel
