#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>
#include <optional>

#include "platform/Notifications.h"

namespace vantorel {

class SessionBus;

/// Messages by the desktop's notification service. Main thread; needs an application object.
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
  void listen(QDBusConnection& bus);
  void close(unsigned id);

  SessionBus& bus_;
  QString listeningTo_;            // the name of the connection
  std::optional<unsigned> shown_;  // what the service calls it
  int posted_ = 0;                 // whose answer is awaited
  std::function<void()> onAction_;
};

}  // namespace vantorel
