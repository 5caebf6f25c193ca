// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <array>
#include <functional>
#include <map>
#include <memory>

namespace vantorel {

class SessionBus;

/// Whether one of the desktop's screen savers is active, which is how they say that they lock the
/// screen, or have blanked it. They are asked when they come and listened to from then on; none is
/// started, and nobody waits for one. Main thread.
class ScreenSavers : public QObject {
  Q_OBJECT

 public:
  /// Each makes its interface and its path of its name.
  static constexpr std::array names = {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                       "org.cinnamon.ScreenSaver", "org.mate.ScreenSaver",
                                       "org.xfce.ScreenSaver"};
  [[nodiscard]] static QString pathOf(const QString& name);

  /// `changed` is called after the answer has changed. `bus` outlives this.
  ScreenSavers(SessionBus& bus, std::function<void()> changed);

  [[nodiscard]] bool isActive() const { return isActive_; }

 private slots:
  void activeChanged(bool isActive, const QDBusMessage& message);

 private:
  struct Saver {
    QString owner;
    bool isActive = false;
    bool hasTold = false;  // by itself, which is newer than what it answers
  };

  void join();
  void leave();
  void ownerKnown(const QString& name, const QString& owner);
  void know();

  SessionBus& bus_;
  std::function<void()> changed_;
  std::unique_ptr<QDBusServiceWatcher> watcher_;
  std::map<QString, Saver> savers_;  // those that are there, by their names
  bool isActive_ = false;
};

}  // namespace vantorel
