// How a row takes the pointer.

#include <QMouseEvent>

#include "panel/ClipRowView.h"
#include "panel/RowGeometry.h"

namespace vantorel {
namespace {

Point toPoint(const QPointF& point) { return {point.x(), point.y()}; }

QRectF imageArea(ClipKind kind) {
  const Rect area = RowGeometry::image(kind);
  return {area.x, area.y, area.width, area.height};
}

}  // namespace

void ClipRowView::mousePressEvent(QMouseEvent* event) {
  const QPoint pointer = event->globalPosition().toPoint();
  if (event->button() == Qt::LeftButton) {
    press_.begin(toPoint(event->position()));
    setSelected(true);
    if (onPress) onPress();
    return;
  }
  if (event->button() != Qt::RightButton) return;
  if (!press_.isPressed()) {
    if (onMenu) onMenu(pointer);
    return;
  }
  // The other button takes back what the left one has begun.
  const bool dragged = press_.isDragging();
  press_.cancel();
  if (dragged && onDrag) onDrag(DragStep::cancel, pointer);
  if (!dragged && onPressCancelled) onPressCancelled();
}

void ClipRowView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint pointer = event->globalPosition().toPoint();
  using Row = RowPress::Row;
  switch (
      press_.moveTo(toPoint(event->position()), content_.pinned ? Row::pinned : Row::notPinned)) {
    case RowPress::Motion::none:
      if (!press_.isPressed()) imageView_.track(event->position(), imageArea(content_.kind));
      return;
    case RowPress::Motion::startsDrag:
      if (onDrag) onDrag(DragStep::begin, pointer);
      return;
    case RowPress::Motion::drags:
      if (onDrag) onDrag(DragStep::move, pointer);
      return;
  }
}

void ClipRowView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const Rect bounds{0, 0, static_cast<double>(width()), static_cast<double>(height())};
  switch (press_.release(toPoint(event->position()), bounds)) {
    case RowPress::End::nothing:
      return;
    case RowPress::End::click:
      if (onChoose) onChoose();
      return;
    case RowPress::End::leftRow:
      if (onPressCancelled) onPressCancelled();
      return;
    case RowPress::End::drop:
      if (onDrag) onDrag(DragStep::drop, event->globalPosition().toPoint());
      return;
  }
}

void ClipRowView::enterEvent(QEnterEvent* event) {
  QWidget::enterEvent(event);
  hovering_ = true;
  updateBackground(Change::animated);
  if (onHoverChanged) onHoverChanged(true);
  imageView_.track(event->position(), imageArea(content_.kind));
}

void ClipRowView::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  hovering_ = false;
  imageView_.track(std::nullopt, imageArea(content_.kind));
  if (onHoverChanged) onHoverChanged(false);
  updateBackground(Change::animated);
}

/// The pointer is not told to leave what is hidden under it.
void ClipRowView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  press_.cancel();
  hovering_ = false;
  imageView_.track(std::nullopt, imageArea(content_.kind));
  updateBackground(Change::immediate);
}

}  // namespace vantorel
