// SPDX-License-Identifier: MIT
#include "panel/RowText.h"

#include <QPainter>
#include <cmath>

#include "chrome/VantorelTheme.h"
#include "panel/RowGeometry.h"

namespace vantorel {
namespace {

constexpr double titlePoints = 13.5;
constexpr double metadataPoints = 10.8;

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

void RowText::forget() { *this = {}; }

void RowText::draw(QPainter& painter, const RowContent& content, double width,
                   const QPalette& palette) {
  drawTitle(painter, content, width, palette);
  drawMetadata(painter, content, width, palette);
}

void RowText::drawTitle(QPainter& painter, const RowContent& content, double width,
                        const QPalette& palette) {
  painter.setFont(titleFont(content.named));
  const Rect place = RowGeometry::title(content.kind, width);
  const QFontMetricsF metrics(painter.font());
  if (!title_) {
    const auto text =
        metrics.elidedText(QString::fromStdString(content.title), Qt::ElideRight, place.width);
    title_ = Title{text, metrics.horizontalAdvance(text)};
  }
  painter.setPen(content.available ? VantorelTheme::label(palette)
                                   : VantorelTheme::tertiaryLabel(palette));
  painter.setLayoutDirection(content.titleIsRTL ? Qt::RightToLeft : Qt::LeftToRight);
  drawLine(painter, content.titleIsRTL ? place.maxX() - title_->width : place.x, place.midY(),
           title_->text);
}

void RowText::drawMetadata(QPainter& painter, const RowContent& content, double width,
                           const QPalette& palette) {
  painter.setFont(metadataFont());
  const Rect place = RowGeometry::metadata(content.kind, width);
  if (!metadata_) {
    const QFontMetricsF metrics(painter.font());
    // Left-to-right marks keep the parts in their order whatever scripts they are written in.
    const auto text = QString::fromStdString(content.metadata)
                          .replace(QStringLiteral(" · "), QStringLiteral(" \u200E·\u200E "));
    metadata_ = metrics.elidedText(text, Qt::ElideRight, place.width);
  }
  painter.setPen(VantorelTheme::secondaryLabel(palette));
  painter.setLayoutDirection(Qt::LeftToRight);
  drawLine(painter, place.x, place.midY(), *metadata_);
}

}  // namespace vantorel
