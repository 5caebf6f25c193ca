// SPDX-License-Identifier: MIT
#pragma once

#include <QPalette>
#include <memory>
#include <string>

#include "platform/Observation.h"
#include "platform/linux/windows/DesktopSettings.h"

namespace vantorel {

class Portal;

/// Draws the program dark on a dark desktop, from its start and when the desktop changes. Where the
/// toolkit has the desktop's own colours, those stay. Main thread; needs an application object.
class DesktopColors {
 public:
  /// `settings` and `portal` outlive this. `environmentTheme` is the theme that GTK_THEME names.
  DesktopColors(const DesktopSettings& settings, Portal& portal, std::string environmentTheme);

 private:
  void apply();

  const DesktopSettings& settings_;
  const Portal& portal_;
  std::string environmentTheme_;
  QPalette toolkitColors_;  // as they were at the start
  bool applied_ = false;    // our own dark colours
  std::unique_ptr<Observation> settingsObservation_;
  std::unique_ptr<Observation> portalObservation_;
};

}  // namespace vantorel
