// SPDX-License-Identifier: MIT
#include "panel/SourceIconView.h"

#include <QPainter>
#include <cmath>

#include "chrome/Geometry.h"
#include "chrome/Symbols.h"
#include "chrome/VantorelTheme.h"
#include "panel/AspectFit.h"
#include "panel/BitmapDrawing.h"

namespace vantorel {
namespace {

constexpr double cornerRadius = 3;
constexpr std::string_view unknownSymbol = "questionmark.circle";

/// The icon in the middle of a square, its corners rounded.
QPixmap prepared(const SharedBitmap& icon, int side, double scale) {
  const auto full = static_cast<double>(side);
  const auto place = aspectFit(icon->size, {0, 0, full, full});
  if (!place) return {};
  const QImage picture = BitmapDrawing::scaled(
      icon, QSizeF(std::round(place->width), std::round(place->height)).toSize());
  if (picture.isNull()) return {};
  QImage square(side, side, QImage::Format_ARGB32_Premultiplied);
  square.fill(Qt::transparent);
  QPainter(&square).drawImage((side - picture.width()) / 2, (side - picture.height()) / 2, picture);
  square = BitmapDrawing::rounded(square, cornerRadius * scale);
  square.setDevicePixelRatio(scale);
  return QPixmap::fromImage(std::move(square));
}

}  // namespace

void SourceIconView::setPending() {
  icon_.reset();
  prepared_ = {};
  state_ = State::pending;
}

void SourceIconView::setUnknown() {
  setPending();
  state_ = State::unknown;
}

void SourceIconView::setIcon(SharedBitmap icon) {
  if (!icon) {
    setUnknown();
    return;
  }
  if (icon == icon_) return;
  setPending();
  icon_ = std::move(icon);
  state_ = State::icon;
}

void SourceIconView::draw(QPainter& painter, const QRectF& area, const QPalette& palette) {
  if (state_ == State::pending) return;
  if (state_ == State::unknown) {
    Symbols::draw(painter, unknownSymbol, area, area.width(),
                  VantorelTheme::tertiaryLabel(palette));
    return;
  }
  const double scale = painter.device()->devicePixelRatioF();
  const int side = static_cast<int>(std::lround(area.width() * scale));
  if (prepared_.width() != side || prepared_.devicePixelRatioF() != scale) {
    prepared_ = prepared(icon_, side, scale);
  }
  painter.drawPixmap(QPointF(onPixel(area.x(), scale), onPixel(area.y(), scale)), prepared_);
}

}  // namespace vantorel
