// SPDX-License-Identifier: MIT
#pragma once

namespace vantorel {

/// Whether the toolkit's parts for Wayland are installed. It ends the process where it is told to
/// speak Wayland and one of them is missing. Needs no application object.
[[nodiscard]] bool hasWaylandPlugins();

}  // namespace vantorel
