// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>

namespace vantorel {

/// Whether somebody shows the items that speak StatusNotifierItem: a watcher on the bus alone only
/// collects them, for hosts that may come. Nobody waits for a watcher; one that does not answer
/// within three seconds has no host until it does. Main thread.
class TrayHost : public QObject {
  Q_OBJECT

 public:
  static constexpr const char* watcher = "org.kde.StatusNotifierWatcher";
  static constexpr const char* watcherPath = "/StatusNotifierWatcher";

  explicit TrayHost(const QDBusConnection& bus);

  /// A watcher came, perhaps in the place of another one. Not for one that is there already.
  std::function<void()> onWatcher;
  /// Called once that is known, and whenever it changes.
  std::function<void(bool)> onChange;

 private slots:
  void ask();

 private:
  void know(bool isThere);

  QDBusConnection bus_;
  QDBusServiceWatcher names_;
  QTimer silence_;  // while there is no answer to the last question
  std::optional<bool> isThere_;
  int questions_ = 0;  // an answer to an older one is none
};

}  // namespace vantorel
