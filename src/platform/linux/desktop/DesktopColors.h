// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QPalette>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "base/Lifetime.h"
#include "platform/Observation.h"
#include "platform/linux/windows/DesktopSettings.h"

namespace vantorel {

class PortalColorScheme;
class SessionBus;

/// Draws the program dark on a dark desktop, from its start and when the desktop changes. Where the
/// toolkit has the desktop's own colours, those stay. Main thread; needs an application object.
class DesktopColors : public QObject {
  Q_OBJECT

 public:
  /// `settings`, `bus` and `portal` outlive this. `environmentTheme` is the theme that GTK_THEME
  /// names.
  DesktopColors(const DesktopSettings& settings, SessionBus& bus, PortalColorScheme& portal,
                std::string environmentTheme);
  ~DesktopColors() override;
  DesktopColors(const DesktopColors&) = delete;
  DesktopColors& operator=(const DesktopColors&) = delete;

 private slots:
  void settingChanged(const QDBusMessage& signal);

 private:
  void joinBus();
  void askPortal();
  void apply();

  const DesktopSettings& settings_;
  SessionBus& bus_;
  std::string environmentTheme_;
  std::optional<std::uint32_t> portal_;  // what it answered last
  QPalette toolkitColors_;               // as they were at the start
  bool applied_ = false;                 // our own dark colours
  QDBusServiceWatcher portalWatcher_;
  std::unique_ptr<Observation> observation_;
  Lifetime life_;
};

}  // namespace vantorel
