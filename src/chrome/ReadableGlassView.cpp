// SPDX-License-Identifier: MIT
#include "chrome/ReadableGlassView.h"

#include <QPainter>

#include "chrome/GlassDrawing.h"

namespace vantorel {

ReadableGlassView::ReadableGlassView(double cornerRadius, QWidget* parent)
    : QWidget(parent), cornerRadius_(cornerRadius) {}

void ReadableGlassView::setFinish(const GlassFinish& finish) {
  if (finish == finish_) return;
  finish_ = finish;
  update();
}

void ReadableGlassView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  GlassDrawing::draw(painter, rect(), cornerRadius_, finish_, palette());
}

void ReadableGlassView::enterEvent(QEnterEvent* event) {
  QWidget::enterEvent(event);
  if (onHoverChanged) onHoverChanged(true);
}

void ReadableGlassView::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  if (onHoverChanged) onHoverChanged(false);
}

}  // namespace vantorel
