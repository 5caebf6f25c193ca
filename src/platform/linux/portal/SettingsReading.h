// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "platform/linux/portal/PortalAnswers.h"
#include "platform/linux/portal/PortalBus.h"

namespace vantorel {

/// Asks each portal that comes for the user's settings, and hears what they become. On the portal's
/// thread.
class SettingsReading {
 public:
  /// `told` is called with all that is known whenever that is more or something else. The bus
  /// outlives this.
  SettingsReading(PortalBus& bus, PortalAnswers::Extent extent,
                  std::function<void(const PortalAnswers&)> told);

 private:
  void ask();
  void changed(GVariant* arguments);

  PortalBus& bus_;
  const PortalAnswers::Extent extent_;
  std::function<void(const PortalAnswers&)> told_;
  PortalAnswers answers_;
};

}  // namespace vantorel
