// SPDX-License-Identifier: MIT
#pragma once

class QPainter;
class QPalette;
class QRectF;

namespace vantorel {

/// Marks the control that has the keyboard, within its `bounds`.
void drawFocusRing(QPainter& painter, const QRectF& bounds, double radius, const QPalette& palette);

}  // namespace vantorel
