// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

namespace vantorel {

/// The toolkit's own connection to the X server; null when it does not speak X11. Main thread.
[[nodiscard]] xcb_connection_t* toolkitConnection();

}  // namespace vantorel
