// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>

class QWidget;

namespace vantorel {

/// Tells assistive programs what a window, or a plain view, is; the toolkit alone would call it a
/// filler. First of all, before anything else of it is told, and once. Main thread.
void setAccessibleRole(QWidget& view, QAccessible::Role role);

}  // namespace vantorel
