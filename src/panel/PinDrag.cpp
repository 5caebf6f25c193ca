// SPDX-License-Identifier: MIT
#include "panel/PinDrag.h"

#include <QKeyEvent>
#include <QWidget>
#include <QWindow>
#include <algorithm>

#include "chrome/Geometry.h"
#include "panel/ClipRowView.h"
#include "panel/PinDragGhost.h"

namespace vantorel {
namespace {

constexpr Seconds scrollInterval{1.0 / 60};

}  // namespace

PinDrag::PinDrag(QWidget& list, std::vector<ClipRowView*> rows, ClipRowView& dragged,
                 Dispatch& dispatch)
    : list_(list),
      rows_(std::move(rows)),
      dragged_(dragged),
      dispatch_(dispatch),
      window_(list.window()->windowHandle()),
      ghost_(std::make_unique<PinDragGhost>(dragged)) {
  for (const auto* row : rows_) {
    places_.push_back({row->content().id, toRect(row->geometry()), row->content().pinned});
  }
  dragged_.setDragged(true);
  // The filter installed last sees a key first: Escape ends the drag before it could mean anything
  // else.
  if (window_) window_->installEventFilter(this);
}

PinDrag::~PinDrag() {
  markTarget(std::nullopt);
  dragged_.setDragged(false);
}

void PinDrag::moveTo(const QPoint& pointer) {
  if (!grip_) grip_ = dragged_.mapFromGlobal(pointer);
  pointer_ = pointer;
  followPointer();
  if (scrollStep() == 0) {
    scrolling_.reset();
  } else if (!scrolling_) {
    scrolling_ = dispatch_.every(scrollInterval, [this] { scroll(); });
  }
}

std::optional<PinDrag::Drop> PinDrag::drop(const QPoint& pointer) {
  moveTo(pointer);
  if (!target_) return std::nullopt;
  return Drop{dragged_.content().id, places_[target_->row].id, target_->place};
}

bool PinDrag::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress ||
      static_cast<const QKeyEvent*>(event)->key() != Qt::Key_Escape) {
    return QObject::eventFilter(watched, event);
  }
  const auto escape = onEscape;
  if (escape) escape();
  return true;
}

void PinDrag::followPointer() {
  const QPoint inList = list_.mapFromGlobal(pointer_);
  ghost_->moveRow(pointer_ - *grip_);
  const QWidget* view = list_.parentWidget();
  const bool seen = view == nullptr || view->rect().contains(view->mapFromGlobal(pointer_));
  markTarget(seen ? pinDropTarget(places_, dragged_.content().id, toPoint(inList)) : std::nullopt);
}

void PinDrag::markTarget(const std::optional<PinDropTarget>& target) {
  if (target_ && (!target || target->row != target_->row)) {
    rows_[target_->row]->setDropPlace(std::nullopt);
  }
  target_ = target;
  if (target_) rows_[target_->row]->setDropPlace(target_->place);
}

double PinDrag::scrollStep() const {
  const QWidget* view = list_.parentWidget();
  if (view == nullptr) return 0;
  DragView seen;
  seen.offset = -list_.y();
  seen.height = view->height();
  for (const auto& place : places_) {
    if (place.pinned) seen.pinsBottom = std::max(seen.pinsBottom, place.frame.maxY());
  }
  return dragScrollStep(seen, view->mapFromGlobal(pointer_).y());
}

void PinDrag::scroll() {
  const double step = scrollStep();
  if (step == 0) {
    scrolling_.reset();
    return;
  }
  if (onScroll) onScroll(step);
  followPointer();
}

}  // namespace vantorel
