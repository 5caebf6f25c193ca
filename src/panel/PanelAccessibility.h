// SPDX-License-Identifier: MIT
#pragma once

namespace vantorel {

/// Lets assistive programs see the list as a list of buttons with their pins. Takes effect once,
/// however often it is called; needs a running toolkit. Main thread.
void installPanelAccessibility();

}  // namespace vantorel
