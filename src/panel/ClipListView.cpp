#include "panel/ClipListView.h"

#include <QAccessible>
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <cmath>

#include "chrome/VantorelTheme.h"
#include "panel/ClipRowView.h"
#include "panel/ListGeometry.h"

namespace vantorel {
namespace {

constexpr double emptyPoints = 13;
constexpr int emptyTop = 24;
constexpr int emptyHeight = 24;
constexpr double separatorAlpha = 0.16;

QRect rounded(const Rect& frame) {
  return {static_cast<int>(std::lround(frame.x)), static_cast<int>(std::lround(frame.y)),
          static_cast<int>(std::lround(frame.width)), static_cast<int>(std::lround(frame.height))};
}

}  // namespace

ClipListView::ClipListView(QWidget* parent) : QWidget(parent), emptyLabel_(new QLabel(this)) {
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(QStringLiteral("Clips"));
  emptyLabel_->setAlignment(Qt::AlignCenter);
  emptyLabel_->setFont(VantorelTheme::systemFont(emptyPoints, QFont::Medium));
  emptyLabel_->setGeometry(0, emptyTop, static_cast<int>(ListGeometry::listWidth), emptyHeight);
  tintEmptyLabel();
}

void ClipListView::setRows(const std::vector<RowContent>& rows,
                           std::optional<std::size_t> boundary) {
  emptyLabel_->hide();
  if (boundary != boundary_) update();
  boundary_ = boundary;
  rowCount_ = rows.size();
  resize(static_cast<int>(ListGeometry::listWidth),
         static_cast<int>(ListGeometry::documentHeight(rows.size(), boundary)));
  for (std::size_t index = 0; index < rows.size(); ++index) {
    auto* row = rowToReuse(index);
    row->setContent(rows[index]);
    row->setGeometry(rounded(ListGeometry::rowFrame(index, boundary)));
    row->show();
  }
  retireRows(rows.size());
  markSelection();
}

void ClipListView::setEmpty(const QString& sentence) {
  if (boundary_) update();
  boundary_.reset();
  rowCount_ = 0;
  selection_.reset();
  retireRows(0);
  resize(static_cast<int>(ListGeometry::listWidth), static_cast<int>(ListGeometry::emptyHeight));
  emptyLabel_->setText(sentence);
  emptyLabel_->show();
}

void ClipListView::select(std::optional<std::size_t> index) {
  selection_ = index;
  markSelection();
  if (!index || *index >= rowCount_ || !QAccessible::isActive()) return;
  QAccessibleEvent focus(rows_[*index], QAccessible::Focus);
  QAccessible::updateAccessibility(&focus);
}

ClipRowView* ClipListView::row(std::size_t index) const {
  return index < rowCount_ ? rows_[index] : nullptr;
}

ClipRowView* ClipListView::rowToReuse(std::size_t index) {
  if (index < rows_.size()) return rows_[index];
  auto* row = new ClipRowView(this);
  row->onChoose = [this, row] {
    if (onChoose) onChoose(Uuid(row->content().id));
  };
  row->onTogglePin = [this, row] {
    if (onTogglePin) onTogglePin(Uuid(row->content().id));
  };
  row->onPressCancelled = [this] { markSelection(); };
  rows_.push_back(row);
  return row;
}

/// Rows without an entry keep nothing of the one they had.
void ClipListView::retireRows(std::size_t first) {
  for (std::size_t index = first; index < rows_.size(); ++index) {
    rows_[index]->hide();
    rows_[index]->setContent({});
  }
}

void ClipListView::markSelection() {
  for (std::size_t index = 0; index < rowCount_; ++index) {
    rows_[index]->setSelected(index == selection_);
  }
}

void ClipListView::paintEvent(QPaintEvent* /*event*/) {
  if (!boundary_) return;
  const auto frame = ListGeometry::separatorFrame(*boundary_);
  QPainter painter(this);
  painter.fillRect(QRectF(frame.x, frame.y, frame.width, frame.height),
                   VantorelTheme::labelWash(palette(), separatorAlpha));
}

void ClipListView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) tintEmptyLabel();
}

void ClipListView::tintEmptyLabel() {
  QPalette colors = emptyLabel_->palette();
  const QColor color = VantorelTheme::secondaryLabel(palette());
  if (colors.color(QPalette::WindowText) == color) return;
  colors.setColor(QPalette::WindowText, color);
  emptyLabel_->setPalette(colors);
}

}  // namespace vantorel
