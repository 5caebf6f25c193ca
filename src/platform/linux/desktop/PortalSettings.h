#pragma once

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QVariant>
#include <memory>
#include <mutex>
#include <string>

#include "platform/Observers.h"
#include "platform/linux/windows/DesktopSettings.h"

namespace vantorel {

class SessionBus;

/// What the desktop's portal tells of the user's settings: animations switched off mean reduced
/// motion, more contrast means reduced transparency. Without a portal nothing is known. Main
/// thread, where nothing else is said.
class PortalSettings : public QObject, public DesktopSettings {
  Q_OBJECT

 public:
  /// `bus` outlives this.
  explicit PortalSettings(SessionBus& bus);
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

  /// One setting has that value, whoever says so.
  void take(const QString& space, const QString& name, const QVariant& value);

 private slots:
  void settingChanged(const QDBusMessage& signal);

 private:
  void joinBus();
  void askAll();
  void ask(const QString& space, const QString& name);

  SessionBus& bus_;
  bool reduceMotion_ = false;
  bool highContrast_ = false;
  mutable ChangeObservers observers_;
  mutable std::mutex mutex_;
  std::string theme_;      // guarded
  std::string iconTheme_;  // guarded
  QDBusServiceWatcher portalWatcher_;
};

}  // namespace vantorel
