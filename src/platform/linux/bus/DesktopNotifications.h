// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <functional>
#include <memory>
#include <optional>

#include "platform/Notifications.h"

class QDBusPendingCall;

namespace vantorel {

class SessionBus;

/// Messages by the desktop's notification service. One that nobody took is posted again when a
/// service comes, and so is the one that was shown when the bus comes back. Main thread; needs an
/// application object.
class DesktopNotifications : public QObject, public Notifications {
  Q_OBJECT

 public:
  /// `bus` outlives this.
  explicit DesktopNotifications(SessionBus& bus);

  void post(const Notification& notification, std::function<void()> onAction) override;
  void withdraw() override;

 private slots:
  void actionInvoked(unsigned id, const QString& action);
  void notificationClosed(unsigned id, unsigned reason);

 private:
  void send();
  void answered(int number, const QDBusPendingCall& call);
  void serviceCame();
  void listen(QDBusConnection& bus);
  void close(unsigned id);

  SessionBus& bus_;
  QString listeningTo_;  // the name of the connection
  std::unique_ptr<QDBusServiceWatcher> watcher_;
  std::optional<Notification> wanted_;  // until it is withdrawn
  bool isTaken_ = false;                // by a service, which may have closed it since
  bool isAsked_ = false;                // for an answer
  bool cameMeanwhile_ = false;          // a service
  std::optional<unsigned> shown_;       // what the service calls it
  unsigned replaced_ = 0;               // by what was posted last; 0 for none
  int posted_ = 0;                      // whose answer is awaited
  std::function<void()> onAction_;
};

}  // namespace vantorel
