// SPDX-License-Identifier: MIT
#pragma once

#include <QGuiApplication>
#include <QWindow>

namespace vantorel {

/// The toolkit takes a tenth of a second to hear that a hidden window has lost the keyboard. Main
/// thread.
[[nodiscard]] inline bool isNoShownWindowFocused() {
  const auto* const focused = QGuiApplication::focusWindow();
  return focused == nullptr || !focused->isVisible();
}

}  // namespace vantorel
