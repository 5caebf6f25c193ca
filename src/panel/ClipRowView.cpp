#include "panel/ClipRowView.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>

#include "chrome/Symbols.h"
#include "chrome/VantorelTheme.h"
#include "panel/PinButton.h"

namespace vantorel {
namespace {

constexpr double cornerRadius = 8;
constexpr double leading = 8;
constexpr double textSymbolWidth = 16;
constexpr double pictureWidth = 56;
constexpr double pictureGap = 9;
constexpr double titleMiddle = 15;
constexpr double metadataMiddle = 33.5;
constexpr double titlePoints = 13.5;
constexpr double metadataPoints = 10.8;
constexpr double hoverAlpha = 0.055;
constexpr double dividerAlpha = 0.075;
constexpr int pinTrailing = 4;
constexpr int titleToPin = 6;

double pictureWidthOf(ClipKind kind) {
  return kind == ClipKind::text ? textSymbolWidth : pictureWidth;
}

double textStart(ClipKind kind) { return leading + pictureWidthOf(kind) + pictureGap; }

QFont titleFont(bool named) {
  return VantorelTheme::systemFont(titlePoints, named ? QFont::DemiBold : QFont::Medium);
}

QFont metadataFont() { return VantorelTheme::systemFont(metadataPoints, QFont::Medium); }

/// Draws one line whose height is centred on `middle`. All rows share a base line, whatever fonts
/// their scripts need.
void drawLine(QPainter& painter, double x, double middle, const QString& text) {
  const QFontMetricsF metrics(painter.font());
  const double baseline = middle + (metrics.ascent() - metrics.descent()) / 2;
  painter.drawText(QPointF(x, std::round(baseline)), text);
}

}  // namespace

ClipRowView::ClipRowView(QWidget* parent) : QWidget(parent), pinButton_(new PinButton(this)) {
  connect(pinButton_, &QAbstractButton::clicked, this, [this] {
    if (onTogglePin) onTogglePin();
  });
}

void ClipRowView::setContent(const RowContent& content) {
  if (content == content_) return;
  if (content.id != content_.id) pressed_ = false;
  content_ = content;
  pinButton_->setState(content.pinned ? PinButton::Pin::pinned : PinButton::Pin::notPinned,
                       content.canPin ? PinButton::Limit::canToggle : PinButton::Limit::full);
  setAccessibleName(QString::fromStdString(content.accessibilityText));
  forgetLines();
}

void ClipRowView::setSelected(bool selected) {
  if (selected == selected_) return;
  selected_ = selected;
  update();
}

void ClipRowView::forgetLines() {
  title_ = {};
  metadata_ = {};
  update();
}

void ClipRowView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  drawBackground(painter);
  drawPlaceholder(painter);
  drawTitle(painter);
  drawMetadata(painter);
}

void ClipRowView::drawBackground(QPainter& painter) const {
  painter.setPen(Qt::NoPen);
  if (content_.divided) {
    const double start = textStart(content_.kind);
    painter.fillRect(QRectF(start, height() - 1, width() - start - leading, 1),
                     VantorelTheme::labelWash(palette(), dividerAlpha));
  }
  if (!selected_ && !hovering_) return;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(selected_ ? VantorelTheme::goldStrong()
                             : VantorelTheme::labelWash(palette(), hoverAlpha));
  painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
  if (!selected_) return;
  constexpr double barInset = 12;
  painter.setBrush(VantorelTheme::gold());
  painter.drawRoundedRect(QRectF(1, barInset, 2, height() - 2 * barInset), 1, 1);
}

void ClipRowView::drawPlaceholder(QPainter& painter) const {
  const QRectF area(leading, 0, pictureWidthOf(content_.kind), height());
  const QColor tint = VantorelTheme::secondaryLabel(palette());
  if (content_.kind == ClipKind::text) {
    constexpr double symbolPoints = 16;
    Symbols::draw(painter, content_.symbol, area, symbolPoints, tint);
    return;
  }
  constexpr double tileSide = 36;
  constexpr double tileRadius = 7;
  constexpr double tileAlpha = 0.05;
  constexpr double symbolPoints = 18;
  QRectF tile(0, 0, tileSide, tileSide);
  tile.moveCenter(area.center());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(VantorelTheme::labelWash(palette(), tileAlpha));
  painter.drawRoundedRect(tile, tileRadius, tileRadius);
  Symbols::draw(painter, content_.symbol, tile, symbolPoints, tint);
}

void ClipRowView::drawTitle(QPainter& painter) {
  painter.setFont(titleFont(content_.named));
  const double start = textStart(content_.kind);
  const double room = pinButton_->x() - titleToPin - start;
  const QFontMetricsF metrics(painter.font());
  if (title_.width < 0) {
    title_.text = metrics.elidedText(QString::fromStdString(content_.title), Qt::ElideRight, room);
    title_.width = metrics.horizontalAdvance(title_.text);
  }
  painter.setPen(content_.available ? VantorelTheme::label(palette())
                                    : VantorelTheme::tertiaryLabel(palette()));
  painter.setLayoutDirection(content_.titleIsRTL ? Qt::RightToLeft : Qt::LeftToRight);
  drawLine(painter, content_.titleIsRTL ? start + room - title_.width : start, titleMiddle,
           title_.text);
}

void ClipRowView::drawMetadata(QPainter& painter) {
  painter.setFont(metadataFont());
  const double start = textStart(content_.kind);
  const double room = pinButton_->x() - titleToPin - start;
  if (metadata_.width < 0) {
    const QFontMetricsF metrics(painter.font());
    // Left-to-right marks keep the parts in their order whatever scripts they are written in.
    const auto text = QString::fromStdString(content_.metadata)
                          .replace(QStringLiteral(" · "), QStringLiteral(" \u200E·\u200E "));
    metadata_.text = metrics.elidedText(text, Qt::ElideRight, room);
    metadata_.width = 0;
  }
  painter.setPen(VantorelTheme::secondaryLabel(palette()));
  painter.setLayoutDirection(Qt::LeftToRight);
  drawLine(painter, start, metadataMiddle, metadata_.text);
}

void ClipRowView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  pinButton_->move(width() - pinTrailing - PinButton::side, (height() - PinButton::side) / 2);
  forgetLines();
}

void ClipRowView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange) {
    forgetLines();
  }
  if (event->type() == QEvent::PaletteChange) update();
}

void ClipRowView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  pressed_ = true;
  setSelected(true);
}

void ClipRowView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !pressed_) return;
  pressed_ = false;
  const auto& report = rect().contains(event->pos()) ? onChoose : onPressCancelled;
  if (report) report();
}

void ClipRowView::enterEvent(QEnterEvent* event) {
  QWidget::enterEvent(event);
  hovering_ = true;
  update();
}

void ClipRowView::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  hovering_ = false;
  update();
}

}  // namespace vantorel
