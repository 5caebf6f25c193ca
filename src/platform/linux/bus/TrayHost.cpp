// SPDX-License-Identifier: MIT
#include "platform/linux/bus/TrayHost.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <chrono>
#include <limits>

namespace vantorel {
namespace {

constexpr std::chrono::seconds patience{3};
constexpr int withoutLimit = std::numeric_limits<int>::max();  // the library's word for it

/// Some watchers are a tray themselves and know no such question.
bool isNotUnderstood(const QDBusError& error) {
  switch (error.type()) {
    case QDBusError::UnknownMethod:
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownProperty:
    case QDBusError::InvalidArgs:
      return true;
    default:
      return false;
  }
}

}  // namespace

TrayHost::TrayHost(const QDBusConnection& bus)
    : bus_(bus), names_(watcher, bus, QDBusServiceWatcher::WatchForOwnerChange) {
  connect(&names_, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString&, const QString&, const QString& owner) {
            if (!owner.isEmpty() && onWatcher) onWatcher();
            ask();
          });
  for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
    bus_.connect(watcher, watcherPath, watcher, signal, this, SLOT(ask()));
  }
  silence_.setSingleShot(true);
  silence_.setInterval(patience);
  connect(&silence_, &QTimer::timeout, this, [this] { know(false); });
  ask();
}

void TrayHost::ask() {
  auto call = QDBusMessage::createMethodCall(watcher, watcherPath,
                                             "org.freedesktop.DBus.Properties", "Get");
  call.setAutoStartService(false);
  call << QString::fromLatin1(watcher) << QStringLiteral("IsStatusNotifierHostRegistered");
  auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(call, withoutLimit), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this,
          [this, pending, question = ++questions_] {
            const QDBusPendingReply<QVariant> reply = *pending;
            pending->deleteLater();
            if (question != questions_) return;
            silence_.stop();
            know(reply.isError() ? isNotUnderstood(reply.error()) : reply.value().toBool());
          });
  silence_.start();
}

void TrayHost::know(bool isThere) {
  if (isThere_ == isThere) return;
  isThere_ = isThere;
  if (onChange) onChange(isThere);
}

}  // namespace vantorel
