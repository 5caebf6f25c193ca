// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <memory>
#include <optional>

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/linux/glib/BusReturn.h"
#include "platform/linux/xdg/XdgDirectories.h"

namespace vantorel {

/// This program's connection to the session bus, made anew when a bus that went away is back at its
/// address. Main thread; needs the application object.
class SessionBus : public QObject {
  Q_OBJECT

 public:
  /// `dispatch` outlives this.
  SessionBus(Dispatch& dispatch, EnvironmentLookup environment);
  ~SessionBus() override;
  SessionBus(const SessionBus&) = delete;
  SessionBus& operator=(const SessionBus&) = delete;

  /// The connection to the bus that is there now; absent without one. The first call connects.
  [[nodiscard]] std::optional<QDBusConnection> connection();

 signals:
  /// There is another connection than before. What was exported and watched on the old one is to be
  /// exported and watched on this one.
  void rejoined();
  /// The connection has ended, and nothing that was exported or watched on it is any more.
  void left();

 private slots:
  void lost();

 private:
  [[nodiscard]] bool adopt(const QDBusConnection& connection);
  void lookForIt();
  void rejoin();

  Dispatch& dispatch_;
  EnvironmentLookup environment_;
  std::optional<QDBusConnection> connection_;
  bool tried_ = false;
  int joined_ = 0;
  std::unique_ptr<BusReturn> looking_;  // while there is something to look for
  Lifetime life_;
};

}  // namespace vantorel
