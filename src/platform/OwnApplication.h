// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Workspace.h"

namespace vantorel {

/// Whether `application` is this program: by its identifier, two absent ones counting as equal, or
/// by its name, which an instance under another identifier has too.
[[nodiscard]] bool isOwnApplication(const Workspace& workspace,
                                    const RunningApplication& application);

}  // namespace vantorel
