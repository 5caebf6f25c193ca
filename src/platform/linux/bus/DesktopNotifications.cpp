// SPDX-License-Identifier: MIT
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

DesktopNotifications::DesktopNotifications(SessionBus& bus) : bus_(bus) {
  connect(&bus_, &SessionBus::rejoined, this, [this] {
    // What had been shown went with the service.
    if (wanted_) send();
  });
}

void DesktopNotifications::post(const Notification& notification, std::function<void()> onAction) {
  wanted_ = notification;
  onAction_ = std::move(onAction);
  send();
}

void DesktopNotifications::send() {
  isTaken_ = false;
  isAsked_ = false;
  auto bus = bus_.connection();
  if (!bus) return;
  listen(*bus);
  QStringList actions;
  if (!wanted_->action.empty()) {
    actions << QString::fromLatin1(actionKey) << QString::fromStdString(wanted_->action);
  }
  auto message = call("Notify");
  replaced_ = shown_.value_or(0);
  message << QStringLiteral("Vantorel") << replaced_ << QString(applicationId::name)
          << QString::fromStdString(wanted_->title)
          << QString::fromStdString(wanted_->body).toHtmlEscaped() << actions
          << QVariantMap{{QStringLiteral("desktop-entry"), QString(applicationId::name)}}
          << untilSeen;
  const int number = ++posted_;
  isAsked_ = true;
  cameMeanwhile_ = false;
  auto* pending = new QDBusPendingCallWatcher(bus->asyncCall(message), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending, number] {
    pending->deleteLater();
    answered(number, *pending);
  });
}

void DesktopNotifications::answered(int number, const QDBusPendingCall& call) {
  const QDBusPendingReply<unsigned> reply = call;
  // Meanwhile it may have been taken back, or followed by another.
  const bool isLatest = number == posted_;
  if (isLatest) isAsked_ = false;
  if (reply.isError()) {
    if (isLatest && cameMeanwhile_) send();
  } else if (isLatest) {
    isTaken_ = true;
    shown_ = reply.value();
  } else if (!wanted_ || reply.value() != replaced_) {
    close(reply.value());  // else the latest is, or will be, shown in its place
  }
}

void DesktopNotifications::serviceCame() {
  if (!wanted_ || isTaken_) return;
  if (isAsked_) {
    cameMeanwhile_ = true;  // the question may have started it, and be answered yet
  } else {
    send();
  }
}

void DesktopNotifications::withdraw() {
  ++posted_;
  wanted_.reset();
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
  watcher_ =
      std::make_unique<QDBusServiceWatcher>(service, bus, QDBusServiceWatcher::WatchForOwnerChange);
  connect(watcher_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString&, const QString&, const QString& owner) {
            if (!owner.isEmpty()) serviceCame();
          });
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
