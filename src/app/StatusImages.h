#pragma once

#include "platform/StatusItem.h"

namespace vantorel {

/// The picture in the desktop's bar, in the sizes that bars have.
[[nodiscard]] StatusImage statusImage(bool isPaused);

}  // namespace vantorel
