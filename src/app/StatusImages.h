// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusItem.h"

namespace vantorel {

/// The picture in the desktop's bar.
[[nodiscard]] StatusImage statusImage(bool isPaused);

}  // namespace vantorel
