// SPDX-License-Identifier: MIT
#include "platform/linux/portal/PortalSettings.h"

namespace vantorel {

PortalSettings::PortalSettings(Portal& portal)
    : portal_(portal), observation_(portal.observe([this] { take(); })) {
  take();
}

bool PortalSettings::reduceMotion() const { return !portal_.answers().animations.value_or(true); }

bool PortalSettings::reduceTransparency() const { return portal_.answers().contrast == 1U; }

std::string PortalSettings::theme() const {
  const std::lock_guard lock(mutex_);
  return theme_;
}

std::string PortalSettings::iconTheme() const {
  const std::lock_guard lock(mutex_);
  return iconTheme_;
}

void PortalSettings::take() {
  {
    const std::lock_guard lock(mutex_);
    theme_ = portal_.answers().theme.value_or(std::string());
    iconTheme_ = portal_.answers().iconTheme.value_or(std::string());
  }
  observers_.notify();
}

}  // namespace vantorel
