// SPDX-License-Identifier: MIT
#include "panel/PinDragGhost.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "chrome/ShadowDrawing.h"
#include "chrome/VantorelTheme.h"
#include "panel/ClipRowView.h"
#include "panel/RowGeometry.h"

namespace vantorel {
namespace {

constexpr int reach = ShadowDrawing::ofCard.reach;
constexpr int windowMargin = 4;  // between the card and the window's edges
constexpr float rimAlpha = 0.6F;

/// Without its pin: where that was, the line that says where the row would go is seen.
QSize cardSize(const QWidget& row) {
  constexpr int gap = 6;
  return {row.width() - static_cast<int>(RowGeometry::pinSide) - gap, row.height()};
}

/// What the row draws, on nothing.
QImage pictureOf(ClipRowView& row) {
  const double scale = row.devicePixelRatioF();
  QImage picture(row.size() * scale, QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  row.render(&picture, {}, {}, QWidget::RenderFlags());
  return picture;
}

int kept(int start, int length, int whole) {
  return std::clamp(start, windowMargin, std::max(windowMargin, whole - windowMargin - length));
}

}  // namespace

PinDragGhost::PinDragGhost(ClipRowView& row)
    : QWidget(row.window()),
      picture_(pictureOf(row)),
      shadow_(ShadowDrawing::tile(ShadowDrawing::ofCard, RowGeometry::cornerRadius,
                                  row.devicePixelRatioF())) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  resize(cardSize(row).grownBy({reach, reach, reach, reach}));
  moveRow(row.mapToGlobal(QPoint(0, 0)));
  show();
  raise();
}

void PinDragGhost::moveRow(const QPoint& corner) {
  const QPoint wanted = parentWidget()->mapFromGlobal(corner);
  const QRect whole = card();
  move(QPoint(kept(wanted.x(), whole.width(), parentWidget()->width()),
              kept(wanted.y(), whole.height(), parentWidget()->height())) -
       whole.topLeft());
}

QRect PinDragGhost::card() const { return rect().adjusted(reach, reach, -reach, -reach); }

void PinDragGhost::paintEvent(QPaintEvent* /*event*/) {
  constexpr double half = 0.5;
  constexpr double radius = RowGeometry::cornerRadius;
  const QRectF whole = card();
  QColor rim = VantorelTheme::sign(VantorelTheme::gold(), palette());
  rim.setAlphaF(rimAlpha);
  QPainterPath outline;
  outline.addRoundedRect(whole, radius, radius);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  ShadowDrawing::draw(painter, size(), shadow_);
  painter.fillPath(outline, VantorelTheme::window(palette()));
  painter.setClipPath(outline);
  painter.drawImage(whole.topLeft(), picture_);
  painter.setClipping(false);
  painter.setPen(QPen(rim, 1));
  painter.drawRoundedRect(whole.adjusted(half, half, -half, -half), radius - half, radius - half);
}

}  // namespace vantorel
