// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "platform/Observers.h"
#include "platform/linux/portal/Portal.h"
#include "platform/linux/windows/DesktopSettings.h"

namespace vantorel {

/// What the desktop's portal tells of the user's settings: animations switched off mean reduced
/// motion, more contrast means reduced transparency. Without a portal nothing is known. Main
/// thread, where nothing else is said.
class PortalSettings : public DesktopSettings {
 public:
  /// The portal outlives this.
  explicit PortalSettings(Portal& portal);

  [[nodiscard]] bool reduceMotion() const override;
  [[nodiscard]] bool reduceTransparency() const override;
  [[nodiscard]] std::unique_ptr<Observation> observe(std::function<void()> changed) const override {
    return observers_.add(std::move(changed));
  }
  [[nodiscard]] std::string theme() const override;
  [[nodiscard]] std::string iconTheme() const override;

 private:
  void take();

  Portal& portal_;
  mutable ChangeObservers observers_;
  mutable std::mutex mutex_;
  std::string theme_;      // guarded
  std::string iconTheme_;  // guarded
  std::unique_ptr<Observation> observation_;
};

}  // namespace vantorel
