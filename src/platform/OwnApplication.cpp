// SPDX-License-Identifier: MIT
#include "platform/OwnApplication.h"

namespace vantorel {

bool isOwnApplication(const Workspace& workspace, const RunningApplication& application) {
  return application.bundleIdentifier == workspace.ownBundleIdentifier() ||
         application.localizedName == "Vantorel";
}

}  // namespace vantorel
