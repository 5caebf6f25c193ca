#include "chrome/ReadableGlassView.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

// The rim tells the panel from a window of the same colour behind it.
constexpr double rimAlphaOnLight = 0.2;
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
  // Row by row, since regions made of polygons leave out their right and lower edges.
  const int rows = static_cast<int>(std::ceil(cornerRadius_));
  QRegion region(rect().adjusted(0, rows, 0, -rows));
  for (int row = 0; row < rows; ++row) {
    constexpr double middleOfPixel = 0.5;
    const double fromCentre = cornerRadius_ - row - middleOfPixel;
    const double half =
        std::sqrt(std::max(0.0, cornerRadius_ * cornerRadius_ - fromCentre * fromCentre));
    const int inset = static_cast<int>(std::lround(cornerRadius_ - half));
    region += QRect(inset, row, width() - 2 * inset, 1);
    region += QRect(inset, height() - 1 - row, width() - 2 * inset, 1);
  }
  return region;
}

void ReadableGlassView::paintEvent(QPaintEvent* /*event*/) {
  const bool dark = VantorelTheme::isDark(palette());
  const QColor rim = VantorelTheme::labelWash(palette(), dark ? rimAlphaOnDark : rimAlphaOnLight);
  QColor veil = VantorelTheme::window(palette());
  veil.setAlphaF(static_cast<float>(finish_.veilAlpha));
  const QRectF bounds = rect();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  if (finish_.outline == GlassFinish::Outline::shaped) {
    // Every pixel at the jagged edge has the colour of the rim.
    painter.fillRect(bounds, veil);
    painter.fillRect(bounds, rim);
    painter.setBrush(veil);
    painter.drawRoundedRect(bounds.adjusted(1, 1, -1, -1), cornerRadius_ - 1, cornerRadius_ - 1);
    return;
  }
  painter.setBrush(veil);
  painter.drawRoundedRect(bounds, cornerRadius_, cornerRadius_);
  constexpr double half = 0.5;
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(rim, 1));
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
