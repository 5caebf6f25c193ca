#include "panel/ClipRowView.h"

#include <QEvent>
#include <QPainter>
#include <cmath>
#include <utility>

#include "chrome/VantorelTheme.h"
#include "panel/PinButton.h"
#include "panel/RowGeometry.h"

namespace vantorel {
namespace {

constexpr double imageRadius = 4;
constexpr double titlePoints = 13.5;
constexpr double metadataPoints = 10.8;
constexpr double dividerAlpha = 0.1;
constexpr double draggedOpacity = 0.35;

QRectF toolkit(const Rect& rect) { return {rect.x, rect.y, rect.width, rect.height}; }

QFont titleFont(bool named) {
  return VantorelTheme::systemFont(titlePoints, named ? QFont::DemiBold : QFont::Medium);
}

QFont metadataFont() { return VantorelTheme::systemFont(metadataPoints, QFont::Medium); }

/// Draws one line whose height is centred on `middle`. All rows share a base line, whatever fonts
/// their scripts need; it lies on a whole pixel.
void drawLine(QPainter& painter, double x, double middle, const QString& text) {
  const QFontMetricsF metrics(painter.font());
  const double baseline = middle + (metrics.ascent() - metrics.descent()) / 2;
  painter.drawText(QPointF(x, std::round(baseline)), text);
}

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
  content_ = content;
  if (!sameEntry) {
    press_.reset();
    dropPlace_.reset();
    imageView_.setImage(nullptr);
    imageView_.forgetPointer();
    updateBackground(Change::immediate);
  }
  imageView_.setPlaceholder(content.kind, content.symbol);
  if (content.sourceBundleIdentifier.empty()) {
    sourceIcon_.setUnknown();
  } else if (!sameSource) {
    sourceIcon_.setNotKnown();
  }
  pinButton_->setRow(content);
  setAccessibleName(QString::fromStdString(content.accessibilityText));
  forgetLines();
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

/// There is a way from one colour to another only for who sees it.
void ClipRowView::updateBackground(Change change) {
  using Look = RowBackground::Look;
  const Look unselected = hovering_ || menuOpen_ ? Look::hovered : Look::plain;
  background_.setLook(selected_ ? Look::selected : unselected,
                      isVisible() ? change : Change::immediate, palette());
}

void ClipRowView::forgetLines() {
  title_ = {};
  metadata_ = {};
  update();
}

void ClipRowView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (dragged_) painter.setOpacity(draggedOpacity);
  drawBackground(painter);
  imageView_.draw(painter, toolkit(RowGeometry::image(content_.kind)), palette());
  sourceIcon_.draw(painter, toolkit(RowGeometry::sourceIcon(content_.kind)), palette());
  drawTitle(painter);
  drawMetadata(painter);
}

void ClipRowView::drawBackground(QPainter& painter) const {
  if (content_.divided) {
    painter.fillRect(toolkit(RowGeometry::divider(content_.kind, width())),
                     VantorelTheme::labelWash(palette(), dividerAlpha));
  }
  painter.setPen(Qt::NoPen);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor wash = background_.color(palette());
  if (wash.alpha() > 0) {
    painter.setBrush(wash);
    painter.drawRoundedRect(rect(), RowGeometry::cornerRadius, RowGeometry::cornerRadius);
  }
  if (selected_) {
    painter.setBrush(VantorelTheme::gold());
    painter.drawRoundedRect(toolkit(RowGeometry::selectionBar()), 1, 1);
  }
  if (dropPlace_) {
    painter.fillRect(toolkit(RowGeometry::dropLine(*dropPlace_, width())),
                     VantorelTheme::secondaryLabel(palette()));
  }
}

void ClipRowView::drawTitle(QPainter& painter) {
  painter.setFont(titleFont(content_.named));
  const Rect place = RowGeometry::title(content_.kind, width());
  const QFontMetricsF metrics(painter.font());
  if (title_.width < 0) {
    title_.text =
        metrics.elidedText(QString::fromStdString(content_.title), Qt::ElideRight, place.width);
    title_.width = metrics.horizontalAdvance(title_.text);
  }
  painter.setPen(content_.available ? VantorelTheme::label(palette())
                                    : VantorelTheme::tertiaryLabel(palette()));
  painter.setLayoutDirection(content_.titleIsRTL ? Qt::RightToLeft : Qt::LeftToRight);
  drawLine(painter, content_.titleIsRTL ? place.maxX() - title_.width : place.x, place.midY(),
           title_.text);
}

void ClipRowView::drawMetadata(QPainter& painter) {
  painter.setFont(metadataFont());
  const Rect place = RowGeometry::metadata(content_.kind, width());
  if (metadata_.width < 0) {
    const QFontMetricsF metrics(painter.font());
    // Left-to-right marks keep the parts in their order whatever scripts they are written in.
    const auto text = QString::fromStdString(content_.metadata)
                          .replace(QStringLiteral(" · "), QStringLiteral(" \u200E·\u200E "));
    metadata_.text = metrics.elidedText(text, Qt::ElideRight, place.width);
    metadata_.width = 0;
  }
  painter.setPen(VantorelTheme::secondaryLabel(palette()));
  painter.setLayoutDirection(Qt::LeftToRight);
  drawLine(painter, place.x, place.midY(), metadata_.text);
}

void ClipRowView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  pinButton_->move(toolkit(RowGeometry::pin(width())).topLeft().toPoint());
  forgetLines();
}

void ClipRowView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange) {
    forgetLines();
  }
  if (event->type() == QEvent::PaletteChange) updateBackground(Change::immediate);
}

}  // namespace vantorel
