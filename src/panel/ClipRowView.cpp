// SPDX-License-Identifier: MIT
#include "panel/ClipRowView.h"

#include <QMouseEvent>
#include <QPainter>
#include <utility>

#include "chrome/FocusRing.h"
#include "chrome/Geometry.h"
#include "chrome/VantorelTheme.h"
#include "panel/PinButton.h"
#include "panel/RowGeometry.h"

namespace vantorel {
namespace {

constexpr double imageRadius = 4;
constexpr double dividerAlpha = 0.1;
constexpr double draggedOpacity = 0.35;
constexpr float selectionRimAlpha = 0.6F;

QRectF imageArea(ClipKind kind) { return toQRectF(RowGeometry::image(kind)); }

}  // namespace

ClipRowView::ClipRowView(const ChromeServices& services, QWidget* parent)
    : QWidget(parent),
      pinButton_(new PinButton(this)),
      imageView_(imageRadius),
      background_(services) {
  setMouseTracking(true);
  connect(pinButton_, &QAbstractButton::clicked, this, [this] {
    if (onTogglePin) onTogglePin();
  });
  imageView_.onHoverChanged = [this](bool hovering) {
    if (onThumbnailHoverChanged) onThumbnailHoverChanged(hovering);
  };
  background_.onChange = [this] { update(); };
}

void ClipRowView::setContent(const RowContent& content) {
  if (content == content_) return;
  const bool sameEntry = content.id == content_.id;
  const bool sameSource = content.sourceBundleIdentifier == content_.sourceBundleIdentifier;
  forget(content_);
  content_ = content;
  if (!sameEntry) {
    press_.reset();
    dropPlace_.reset();
    imageView_.setImage(nullptr);
    imageView_.forgetPointer();
    entered_ = false;
    updateBackground(Change::immediate);
  }
  imageView_.setPlaceholder(content.kind, content.symbol);
  if (content.sourceBundleIdentifier.empty()) {
    sourceIcon_.setUnknown();
  } else if (!sameSource) {
    sourceIcon_.setPending();
  }
  pinButton_->setRow(content);
  setAccessibleName(QString::fromStdString(content.accessibilityText));
  const auto state = content.pinned ? pinState(true) : QString();
  if (accessibleDescription() != state) setAccessibleDescription(state);
  forgetText();
}

void ClipRowView::updateThumbnail(SharedBitmap thumbnail) {
  if (!thumbnail || thumbnail == imageView_.image()) return;
  imageView_.setImage(std::move(thumbnail));
  update();
}

void ClipRowView::setSourceIcon(SharedBitmap icon) {
  sourceIcon_.setIcon(std::move(icon));
  update();
}

void ClipRowView::setSelected(bool selected, Change change) {
  selected_ = selected;
  updateBackground(change);
}

void ClipRowView::setRinged(bool ringed) {
  if (ringed == ringed_) return;
  ringed_ = ringed;
  update();
}

void ClipRowView::setNextSelected(bool selected) {
  if (selected == nextSelected_) return;
  nextSelected_ = selected;
  update();
}

void ClipRowView::setMenuOpen(bool open) {
  menuOpen_ = open;
  updateBackground(Change::animated);
}

void ClipRowView::setDropPlace(std::optional<DropPlace> place) {
  if (place == dropPlace_) return;
  dropPlace_ = place;
  update();
}

void ClipRowView::setDragged(bool dragged) {
  dragged_ = dragged;
  pinButton_->setVisible(!dragged);
  if (dragged) {
    setCursor(Qt::ClosedHandCursor);
  } else {
    unsetCursor();
  }
  update();
}

/// The colour fades only where that can be seen.
void ClipRowView::updateBackground(Change change) {
  using Look = RowBackground::Look;
  const Look unselected = hovering_ || menuOpen_ ? Look::hovered : Look::plain;
  background_.setLook(selected_ ? Look::selected : unselected,
                      isVisible() ? change : Change::immediate, palette());
}

void ClipRowView::forgetText() {
  text_.forget();
  update();
}

void ClipRowView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (dragged_) painter.setOpacity(draggedOpacity);
  drawBackground(painter);
  imageView_.draw(painter, imageArea(content_.kind), palette());
  sourceIcon_.draw(painter, toQRectF(RowGeometry::sourceIcon(content_.kind)), palette());
  text_.draw(painter, content_, width(), palette());
}

void ClipRowView::drawBackground(QPainter& painter) const {
  if (content_.divided && !selected_ && !nextSelected_) {
    painter.fillRect(toQRectF(RowGeometry::divider(content_.kind, width())),
                     VantorelTheme::labelWash(palette(), dividerAlpha));
  }
  painter.setPen(Qt::NoPen);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor wash = background_.color(palette());
  if (wash.alpha() > 0) {
    painter.setBrush(wash);
    painter.drawRoundedRect(rect(), RowGeometry::cornerRadius, RowGeometry::cornerRadius);
  }
  if (selected_) drawSelection(painter);
  if (ringed_) drawFocusRing(painter, rect(), RowGeometry::cornerRadius, palette());
  if (dropPlace_) {
    painter.fillRect(toQRectF(RowGeometry::dropLine(*dropPlace_, width())),
                     VantorelTheme::secondaryLabel(palette()));
  }
}

/// The wash alone is fainter than that of the row under the pointer: a rim makes up for it.
void ClipRowView::drawSelection(QPainter& painter) const {
  constexpr double half = 0.5;
  const QColor gold = VantorelTheme::gold();
  const QColor edge = VantorelTheme::sign(gold, palette());
  const QRectF bar = toQRectF(RowGeometry::selectionBar());
  QColor rim = edge;
  rim.setAlphaF(selectionRimAlpha);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(rim, 1));
  painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half),
                          RowGeometry::cornerRadius - half, RowGeometry::cornerRadius - half);
  painter.setPen(Qt::NoPen);
  if (edge != gold) {
    painter.setBrush(edge);
    painter.drawRoundedRect(bar.adjusted(-1, -1, 1, 1), 2, 2);
  }
  painter.setBrush(gold);
  painter.drawRoundedRect(bar, 1, 1);
}

void ClipRowView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  pinButton_->move(toQRect(RowGeometry::pin(width())).topLeft());
  forgetText();
}

void ClipRowView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange) {
    forgetText();
  }
  if (event->type() == QEvent::PaletteChange) updateBackground(Change::immediate);
}

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
      if (!press_.isPressed()) pointerMoved(event->position());
      return;
    case RowPress::Motion::startsDrag:
      // The pointer may have come a long way since the press; the row is held where it was pressed.
      if (onDrag) onDrag(DragStep::begin, mapToGlobal(toQPoint(*press_.origin())));
      [[fallthrough]];
    case RowPress::Motion::drags:
      if (onDrag) onDrag(DragStep::move, pointer);
      return;
  }
}

void ClipRowView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  switch (press_.release(toPoint(event->position()), toRect(rect()))) {
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
  pointerMoved(event->position());
}

void ClipRowView::pointerMoved(const QPointF& pointer) {
  if (pointerRests && pointerRests()) return;
  if (!std::exchange(entered_, true) && onHoverChanged) onHoverChanged(true);
  imageView_.track(pointer, imageArea(content_.kind));
}

void ClipRowView::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  hovering_ = false;
  imageView_.track(std::nullopt, imageArea(content_.kind));
  if (std::exchange(entered_, false) && onHoverChanged) onHoverChanged(false);
  updateBackground(Change::animated);
}

/// A row hidden under the pointer is not told that the pointer has left.
void ClipRowView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  press_.cancel();
  hovering_ = false;
  entered_ = false;
  imageView_.track(std::nullopt, imageArea(content_.kind));
  updateBackground(Change::immediate);
}

}  // namespace vantorel
