// SPDX-License-Identifier: MIT
#include "chrome/Symbols.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <algorithm>
#include <cmath>

#include "chrome/Geometry.h"

// Resources of a static library have to be asked for, outside every namespace.
static void loadSymbols() { Q_INIT_RESOURCE(symbols); }

namespace vantorel::Symbols {

QPixmap pixmap(std::string_view name, double points, const QColor& color, double scale) {
  const auto file = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
  const int side = static_cast<int>(std::lround(points * scale));
  const auto key =
      QStringLiteral("symbol/%1/%2/%3/%4").arg(file).arg(side).arg(scale).arg(color.rgba(), 0, 16);
  QPixmap result;
  if (QPixmapCache::find(key, &result)) return result;

  loadSymbols();
  const auto path = QStringLiteral(":/symbols/%1.svg").arg(file);
  if (!QFile::exists(path)) return {};
  QSvgRenderer renderer(path);
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.render(&painter);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(image.rect(), color);
  painter.end();

  result = QPixmap::fromImage(image);
  result.setDevicePixelRatio(scale);
  QPixmapCache::insert(key, result);
  return result;
}

void draw(QPainter& painter, std::string_view name, const QRectF& area, double points,
          const QColor& color) {
  const double scale = painter.device()->devicePixelRatioF();
  const auto picture = pixmap(name, points, color, scale);
  painter.drawPixmap(QPointF(onPixel(area.center().x() - points / 2, scale),
                             onPixel(area.center().y() - points / 2, scale)),
                     picture);
}

void drawRimmed(QPainter& painter, std::string_view name, const QRectF& area, double points,
                const QColor& color, const QColor& rim) {
  constexpr double rimPoints = 0.75;
  const double scale = painter.device()->devicePixelRatioF();
  const double width = std::max(1.0, std::round(rimPoints * scale)) / scale;
  for (const double x : {-width, 0.0, width}) {
    for (const double y : {-width, 0.0, width}) {
      if (x != 0 || y != 0) draw(painter, name, area.translated(x, y), points, rim);
    }
  }
  draw(painter, name, area, points, color);
}

}  // namespace vantorel::Symbols
