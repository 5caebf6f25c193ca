// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <memory>
#include <mutex>
#include <string>

#include "base/Lifetime.h"
#include "platform/Observers.h"
#include "platform/linux/desktop/PortalColorScheme.h"
#include "platform/linux/windows/DesktopSettings.h"

namespace vantorel {

class SessionBus;

/// What the desktop's portal told of the user's settings at the start, and tells when they change:
/// animations switched off mean reduced motion, more contrast means reduced transparency. Without a
/// portal nothing is known. Main thread, where nothing else is said.
class PortalSettings : public QObject, public DesktopSettings {
  Q_OBJECT

 public:
  /// Both outlive this.
  PortalSettings(SessionBus& bus, PortalColorScheme& portal);
  ~PortalSettings() override;
  PortalSettings(const PortalSettings&) = delete;
  PortalSettings& operator=(const PortalSettings&) = delete;

  [[nodiscard]] bool reduceMotion() const override { return reduceMotion_; }
  [[nodiscard]] bool reduceTransparency() const override { return highContrast_; }
  [[nodiscard]] std::unique_ptr<Observation> observe(std::function<void()> changed) const override {
    return observers_.add(std::move(changed));
  }
  [[nodiscard]] std::string theme() const override;
  [[nodiscard]] std::string iconTheme() const override;

 private slots:
  void settingChanged(const QDBusMessage& signal);

 private:
  void joinBus();
  void take(const PortalColorScheme::OtherSettings& told);

  SessionBus& bus_;
  bool reduceMotion_ = false;
  bool highContrast_ = false;
  mutable ChangeObservers observers_;
  mutable std::mutex mutex_;
  std::string theme_;      // guarded
  std::string iconTheme_;  // guarded
  Lifetime life_;
};

}  // namespace vantorel
