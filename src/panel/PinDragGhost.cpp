#include "panel/PinDragGhost.h"

#include <QPainter>

#include "chrome/VantorelTheme.h"
#include "panel/RowGeometry.h"

namespace vantorel {
namespace {

// What is below stays visible, and what is above legible.
constexpr double sheetAlpha = 0.78;
constexpr double pictureOpacity = 0.9;
constexpr double rimAlpha = 0.22;

}  // namespace

PinDragGhost::PinDragGhost(QWidget& row, QWidget* list) : QWidget(list), picture_(row.grab()) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setGeometry(row.geometry());
  show();
  raise();
}

void PinDragGhost::leaveOpen(const QRect& part) {
  const QRect hole = part.translated(-pos()) & rect();
  if (hole.isEmpty()) {
    clearMask();
  } else {
    setMask(QRegion(rect()) - hole);
  }
}

void PinDragGhost::paintEvent(QPaintEvent* /*event*/) {
  constexpr double half = 0.5;
  QColor sheet = VantorelTheme::window(palette());
  sheet.setAlphaF(static_cast<float>(sheetAlpha));
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(sheet);
  painter.setPen(QPen(VantorelTheme::labelWash(palette(), rimAlpha), 1));
  painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half),
                          RowGeometry::cornerRadius, RowGeometry::cornerRadius);
  painter.setOpacity(pictureOpacity);
  painter.drawPixmap(0, 0, picture_);
}

}  // namespace vantorel
