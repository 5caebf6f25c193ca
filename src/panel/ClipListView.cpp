// SPDX-License-Identifier: MIT
#include "panel/ClipListView.h"

#include <QEvent>
#include <QHideEvent>
#include <QInputMethodEvent>
#include <QLabel>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>

#include "chrome/FocusRing.h"
#include "chrome/Geometry.h"
#include "chrome/RestingPointer.h"
#include "chrome/VantorelTheme.h"
#include "panel/ClipRowView.h"
#include "panel/ListGeometry.h"
#include "panel/PinDrag.h"

namespace vantorel {
namespace {

constexpr double emptyPoints = 13;
constexpr int emptyTop = 24;
constexpr int emptyHeight = 24;
constexpr double separatorAlpha = 0.16;

Hover hoverOf(bool hovering) { return hovering ? Hover::entered : Hover::exited; }

}  // namespace

ClipListView::ClipListView(const ChromeServices& services, QWidget* parent)
    : QWidget(parent),
      services_(services),
      emptyLabel_(new QLabel(this)),
      presenter_(services),
      previews_(services.dispatch,
                {[this](Uuid id) { return openPreview(id); }, [this] { presenter_.close(); }}),
      menu_(services, *this),
      reader_(*this, services.dispatch,
              [this] { return selection_ ? row(*selection_) : nullptr; }) {
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_InputMethodEnabled);
  setAccessibleName(QStringLiteral("Clips"));
  emptyLabel_->setAlignment(Qt::AlignCenter);
  emptyLabel_->setFont(VantorelTheme::systemFont(emptyPoints, QFont::Medium));
  emptyLabel_->setGeometry(0, emptyTop, static_cast<int>(ListGeometry::listWidth), emptyHeight);
  tintEmptyLabel();
  presenter_.onHoverChanged = [this](bool hovering) {
    previews_.previewHoverChanged(hoverOf(hovering));
  };
  presenter_.onClosed = [this] { previews_.previewClosed(); };
  reader_.onSay = [this](const QString& text) {
    if (onSay) onSay(text);
  };
  menu_.onOpened = [this] {
    if (onMenuOpened) onMenuOpened();
  };
  menu_.onClosed = [this] {
    if (onMenuClosed) onMenuClosed();
  };
  menu_.onChosen = [this](RowAction action, Uuid id) { perform(commands, action, id); };
}

ClipListView::~ClipListView() = default;

void ClipListView::setRows(const std::vector<RowContent>& rows,
                           std::optional<std::size_t> boundary) {
  endDrag();
  rowsMoved();
  emptyLabel_->hide();
  if (!accessibleDescription().isEmpty()) setAccessibleDescription({});
  if (boundary != boundary_) update();
  boundary_ = boundary;
  rowCount_ = rows.size();
  resize(static_cast<int>(ListGeometry::listWidth),
         static_cast<int>(ListGeometry::documentHeight(rows.size(), boundary)));
  for (std::size_t index = 0; index < rows.size(); ++index) {
    auto* row = rowToReuse(index);
    if (row->content().id != rows[index].id) previews_.forget(row->content().id);
    row->setContent(rows[index]);
    row->setGeometry(toQRect(ListGeometry::rowFrame(index, boundary)));
    row->show();
  }
  retireRows(rows.size());
  markSelection();
}

void ClipListView::setEmpty(const QString& sentence) {
  endDrag();
  rowsMoved();
  if (boundary_) update();
  boundary_.reset();
  rowCount_ = 0;
  selection_.reset();
  retireRows(0);
  resize(static_cast<int>(ListGeometry::listWidth), static_cast<int>(ListGeometry::emptyHeight));
  emptyLabel_->setText(sentence);
  emptyLabel_->show();
  if (accessibleDescription() != sentence) setAccessibleDescription(sentence);
  reader_.tell();
}

void ClipListView::select(std::optional<std::size_t> index) {
  selection_ = index;
  markSelection();
  reader_.tell();
}

void ClipListView::setThumbnail(Uuid id, SharedBitmap thumbnail) {
  auto* row = rowOf(id);
  if (row == nullptr || !thumbnail) return;
  if (previews_.shown() == id) presenter_.updateImage(thumbnail);
  row->updateThumbnail(std::move(thumbnail));
}

void ClipListView::setSourceIcon(const std::string& bundleIdentifier, const SharedBitmap& icon) {
  if (bundleIdentifier.empty()) return;
  for (std::size_t index = 0; index < rowCount_; ++index) {
    if (rows_[index]->content().sourceBundleIdentifier == bundleIdentifier) {
      rows_[index]->setSourceIcon(icon);
    }
  }
}

ClipRowView* ClipListView::row(std::size_t index) const {
  return index < rowCount_ ? rows_[index] : nullptr;
}

ClipRowView* ClipListView::rowOf(Uuid id) const {
  const auto end = rows_.begin() + static_cast<std::ptrdiff_t>(rowCount_);
  const auto found = std::find_if(rows_.begin(), end,
                                  [&](const ClipRowView* row) { return row->content().id == id; });
  return found == end ? nullptr : *found;
}

ClipRowView* ClipListView::rowToReuse(std::size_t index) {
  if (index < rows_.size()) return rows_[index];
  auto* row = new ClipRowView(services_, this);
  wire(*row);
  rows_.push_back(row);
  return row;
}

/// Rows without an entry keep nothing of the one they had.
void ClipListView::retireRows(std::size_t first) {
  for (std::size_t index = first; index < rows_.size(); ++index) {
    previews_.forget(rows_[index]->content().id);
    rows_[index]->hide();
    rows_[index]->setContent({});
  }
}

void ClipListView::markSelection() {
  for (std::size_t index = 0; index < rowCount_; ++index) {
    rows_[index]->setSelected(index == selection_);
    rows_[index]->setNextSelected(index + 1 == selection_);
    rows_[index]->setRinged(ringed_ && index == selection_);
  }
}

void ClipListView::setRinged(bool ringed) {
  if (ringed == ringed_) return;
  ringed_ = ringed;
  update();
  for (std::size_t index = 0; index < rowCount_; ++index) {
    rows_[index]->setRinged(ringed_ && index == selection_);
  }
}

void ClipListView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (ringed_ && rowCount_ == 0) {
    painter.setRenderHint(QPainter::Antialiasing);
    drawFocusRing(painter, rect(), RowGeometry::cornerRadius, palette());
  }
  if (!boundary_) return;
  painter.fillRect(toQRectF(ListGeometry::separatorFrame(*boundary_)),
                   VantorelTheme::labelWash(palette(), separatorAlpha));
}

void ClipListView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) tintEmptyLabel();
}

void ClipListView::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  const auto reason = event->reason();
  if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) setRinged(true);
  reader_.forget();
  reader_.tell();
}

/// A menu or another window borrows the keyboard only.
void ClipListView::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  const auto reason = event->reason();
  if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) setRinged(false);
}

/// An empty list neither scrolls nor gives way.
void ClipListView::wheelEvent(QWheelEvent* event) { event->setAccepted(rowCount_ == 0); }

/// Without input methods a dead key would be lost, and the letter after it come alone.
void ClipListView::inputMethodEvent(QInputMethodEvent* event) {
  event->accept();
  if (event->commitString().isEmpty() && event->preeditString().isEmpty()) return;
  if (onComposed) onComposed(event->commitString());
}

void ClipListView::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  rowsMoved();
}

void ClipListView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!pointer_) pointer_ = std::make_unique<RestingPointer>(*window(), services_.dispatch);
}

void ClipListView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  if (event->spontaneous()) return;  // on another desktop, and back as it was
  endDrag();
  hidePreviews();
  setRinged(false);
  menu_.close();
  reader_.forget();
  for (auto* row : rows_) row->setContent({});
}

void ClipListView::tintEmptyLabel() {
  VantorelTheme::setTextColor(*emptyLabel_, VantorelTheme::secondaryLabel(palette()));
}

void ClipListView::wire(ClipRowView& row) {
  row.onChoose = [this, &row] {
    if (commands.onChoose) commands.onChoose(row.content().id);
  };
  row.onTogglePin = [this, &row] { perform(commands, RowAction::togglePin, row.content().id); };
  row.onPress = [this] { hidePreviews(); };
  row.onPressCancelled = [this] { markSelection(); };
  row.onMenu = [this, &row](const QPoint& pointer) {
    hidePreviews();
    menu_.show(row, pointer);
  };
  row.onHoverChanged = [this, &row](bool hovering) {
    previews_.rowHoverChanged(row.content().id, hoverOf(hovering),
                              previewStart(row.content().kind));
  };
  row.pointerRests = [this] { return pointer_ && pointer_->isFollowed(); };
  row.onThumbnailHoverChanged = [this, &row](bool hovering) {
    // On the symbol of a text the pointer is on the text's row as much as beside it.
    if (previewStart(row.content().kind) == PreviewStart::row) return;
    previews_.thumbnailHoverChanged(row.content().id, hoverOf(hovering));
  };
  row.onDrag = [this, &row](ClipRowView::DragStep step, const QPoint& pointer) {
    switch (step) {
      case ClipRowView::DragStep::begin:
        beginDrag(row, pointer);
        break;
      case ClipRowView::DragStep::move:
        if (drag_) drag_->moveTo(pointer);
        break;
      case ClipRowView::DragStep::drop:
        dropDragged(pointer);
        break;
      case ClipRowView::DragStep::cancel:
        endDrag();
        break;
    }
  };
}

void ClipListView::showPreview(std::size_t index) {
  if (const auto* shown = row(index)) previews_.showPreview(shown->content().id);
}

bool ClipListView::previewShown(std::size_t index) const {
  const auto* shown = row(index);
  return shown != nullptr && previews_.shown() == shown->content().id;
}

void ClipListView::rowsMoved() {
  hidePreviews();
  if (pointer_) pointer_->contentMoved();
}

void ClipListView::hidePreviews() { previews_.hidePreview(); }

bool ClipListView::openPreview(Uuid id) {
  const auto* row = rowOf(id);
  if (row == nullptr || !row->isVisible() || row->didDrag() || !commands.entry) return false;
  auto item = commands.entry(id);
  if (!item) return false;
  presenter_.show(std::move(*item), row->thumbnail(), *row);
  return true;
}

void ClipListView::beginDrag(ClipRowView& row, const QPoint& pointer) {
  hidePreviews();
  drag_ = std::make_unique<PinDrag>(
      *this, std::vector(rows_.begin(), rows_.begin() + static_cast<std::ptrdiff_t>(rowCount_)),
      row, services_.dispatch);
  drag_->onEscape = [this] { endDrag(); };
  drag_->onScroll = [this](double distance) {
    if (onScroll) onScroll(distance);
  };
  drag_->moveTo(pointer);
}

void ClipListView::dropDragged(const QPoint& pointer) {
  if (!drag_) return;
  const auto drop = drag_->drop(pointer);
  endDrag();
  if (drop && commands.onDropPin) commands.onDropPin(drop->dragged, drop->onto, drop->place);
}

/// Ends a drag without a drop.
void ClipListView::endDrag() {
  if (!drag_) return;
  drag_->dragged().cancelPress();
  drag_.reset();
  markSelection();
}

}  // namespace vantorel
