#pragma once

class QPainter;
class QRectF;

namespace vantorel {

/// Marks, within `bounds`, the control that the keyboard speaks to.
void drawFocusRing(QPainter& painter, const QRectF& bounds, double radius);

}  // namespace vantorel
