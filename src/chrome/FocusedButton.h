// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>

namespace vantorel {

/// The button that the user has walked to in this window: Return means that one, and what the
/// window does by default where there is none. Null for a check box too, which Return does not
/// tick.
[[nodiscard]] inline QAbstractButton* focusedButton(const QWidget& window) {
  auto* button = qobject_cast<QAbstractButton*>(window.focusWidget());
  return button != nullptr && !button->isCheckable() ? button : nullptr;
}

}  // namespace vantorel
