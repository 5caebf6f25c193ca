// SPDX-License-Identifier: MIT
#include "panel/ThumbnailImageView.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "chrome/Geometry.h"
#include "chrome/Symbols.h"
#include "chrome/VantorelTheme.h"
#include "panel/AspectFit.h"
#include "panel/BitmapDrawing.h"

namespace vantorel {
namespace {

// The placeholder is a tile with a symbol, smaller where there is less room. Where there is more,
// the symbol stands alone: what is around it is a tile already.
constexpr double tileSide = 50;
constexpr double tileRadius = 10;
constexpr double tileSymbol = 22;
constexpr double tileAlpha = 0.05;
constexpr double loneSymbol = 56;
constexpr double textSymbol = 16;

// Keeps pictures of the colour of the panel from dissolving into it.
constexpr double frameAlpha = 0.16;
constexpr double patternSquare = 4;

std::optional<Rect> fitted(Size size, const QRectF& area) {
  return aspectFit(size, {area.x(), area.y(), area.width(), area.height()});
}

/// Moved to whole pixels, so that the picture stays sharp.
QRectF onPixels(const Rect& place, double scale) {
  const double pixel = 1 / scale;
  return {onPixel(place.x, scale), onPixel(place.y, scale),
          std::max(pixel, onPixel(place.width, scale)),
          std::max(pixel, onPixel(place.height, scale))};
}

}  // namespace

void ThumbnailImageView::setPlaceholder(ClipKind kind, std::string_view symbol) {
  if (kind != kind_) prepared_ = {};
  kind_ = kind;
  symbol_ = symbol;
}

void ThumbnailImageView::setImage(SharedBitmap image) {
  image_ = std::move(image);
  prepared_ = {};
}

void ThumbnailImageView::draw(QPainter& painter, const QRectF& area, const QPalette& palette) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (image_) {
    drawImage(painter, area, palette);
  } else {
    drawPlaceholder(painter, area, palette);
  }
  painter.restore();
}

void ThumbnailImageView::drawImage(QPainter& painter, const QRectF& area, const QPalette& palette) {
  const auto place = fitted(image_->size, area);
  if (!place) return;
  const double scale = painter.device()->devicePixelRatioF();
  const QRectF target = onPixels(*place, scale);
  const QSize pixels = (target.size() * scale).toSize();
  if (prepared_.pixmap.size() != pixels || prepared_.scale != scale) {
    prepared_ = prepared(pixels, scale);
  }
  if (prepared_.pixmap.isNull()) return;
  painter.drawPixmap(target.topLeft(), prepared_.pixmap);
  if (!prepared_.framed) return;
  const double line = 1 / scale;
  const QRectF frame = target.adjusted(line / 2, line / 2, -line / 2, -line / 2);
  if (frame.width() <= 0 || frame.height() <= 0) return;
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(VantorelTheme::labelWash(palette, frameAlpha), line));
  painter.drawRoundedRect(frame, cornerRadius_, cornerRadius_);
}

ThumbnailImageView::Prepared ThumbnailImageView::prepared(QSize pixels, double scale) const {
  using BitmapDrawing::Coverage;
  QImage picture = BitmapDrawing::scaled(image_, pixels);
  if (picture.isNull()) return {};
  const auto coverage = BitmapDrawing::coverage(picture);
  const bool isIcon = kind_ != ClipKind::image && coverage == Coverage::partialCorners;
  if (!isIcon) {
    if (coverage != Coverage::full) {
      QImage backing(picture.size(), QImage::Format_ARGB32_Premultiplied);
      BitmapDrawing::fillTransparencyPattern(
          backing, std::max(1, static_cast<int>(std::lround(patternSquare * scale))));
      QPainter(&backing).drawImage(0, 0, picture);
      picture = backing;
    }
    picture = BitmapDrawing::rounded(picture, cornerRadius_ * scale);
  }
  picture.setDevicePixelRatio(scale);
  return {QPixmap::fromImage(std::move(picture)), !isIcon, scale};
}

void ThumbnailImageView::drawPlaceholder(QPainter& painter, const QRectF& area,
                                         const QPalette& palette) const {
  const QColor tint = VantorelTheme::secondaryLabel(palette);
  if (kind_ == ClipKind::text) {
    Symbols::draw(painter, symbol_, area, textSymbol, tint);
    return;
  }
  const auto place = fitted({tileSide, tileSide}, area);
  if (!place) return;
  const QRectF tile = toQRectF(*place);
  if (tile.width() > tileSide) return Symbols::draw(painter, symbol_, area, loneSymbol, tint);
  const double zoom = tile.width() / tileSide;
  painter.setPen(Qt::NoPen);
  painter.setBrush(VantorelTheme::labelWash(palette, tileAlpha));
  painter.drawRoundedRect(tile, tileRadius * zoom, tileRadius * zoom);
  Symbols::draw(painter, symbol_, tile, tileSymbol * zoom, tint);
}

void ThumbnailImageView::track(const std::optional<QPointF>& pointer, const QRectF& area) {
  const bool hovering = pointer && area.contains(*pointer);
  if (hovering == hovering_) return;
  hovering_ = hovering;
  if (onHoverChanged) onHoverChanged(hovering);
}

}  // namespace vantorel
