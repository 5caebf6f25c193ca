#include "chrome/ReadableGlassView.h"

#include <QBitmap>
#include <QPainter>
#include <QPainterPath>

#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

// The rim tells the panel from a window of the same colour behind it.
constexpr double rimAlphaOnLight = 0.16;
constexpr double rimAlphaOnDark = 0.22;

}  // namespace

ReadableGlassView::ReadableGlassView(double cornerRadius, QWidget* parent)
    : QWidget(parent), cornerRadius_(cornerRadius) {}

void ReadableGlassView::setFinish(const GlassFinish& finish) {
  if (finish == finish_) return;
  finish_ = finish;
  update();
}

QRegion ReadableGlassView::outline() const {
  QPainterPath path;
  path.addRoundedRect(rect(), cornerRadius_, cornerRadius_);
  return QRegion(path.toFillPolygon().toPolygon());
}

void ReadableGlassView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor veil = VantorelTheme::window(palette());
  veil.setAlphaF(static_cast<float>(finish_.veilAlpha));
  const QRectF bounds = rect();
  if (finish_.outline == GlassFinish::Outline::shaped) {
    painter.fillRect(bounds, veil);
  } else {
    painter.setPen(Qt::NoPen);
    painter.setBrush(veil);
    painter.drawRoundedRect(bounds, cornerRadius_, cornerRadius_);
  }
  const bool dark = VantorelTheme::isDark(palette());
  painter.setBrush(Qt::NoBrush);
  painter.setPen(
      QPen(VantorelTheme::labelWash(palette(), dark ? rimAlphaOnDark : rimAlphaOnLight), 1));
  constexpr double half = 0.5;
  painter.drawRoundedRect(bounds.adjusted(half, half, -half, -half), cornerRadius_ - half,
                          cornerRadius_ - half);
}

void ReadableGlassView::enterEvent(QEnterEvent* event) {
  QWidget::enterEvent(event);
  if (onHoverChanged) onHoverChanged(true);
}

void ReadableGlassView::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  if (onHoverChanged) onHoverChanged(false);
}

}  // namespace vantorel
