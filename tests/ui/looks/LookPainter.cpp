// SPDX-License-Identifier: MIT
#include "ui/looks/LookPainter.h"

#include <QApplication>
#include <QEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <vector>

#include "chrome/ShadowDrawing.h"

namespace vantorel {
namespace {

constexpr int margin = 10;

/// Those in front last: the panel is behind whatever belongs to it.
std::vector<QWidget*> shownWindows() {
  std::vector<QWidget*> shown;
  const auto widgets = QApplication::topLevelWidgets();
  for (auto* widget : widgets) {
    if (widget->isVisible()) shown.push_back(widget);
  }
  std::sort(shown.begin(), shown.end(), [](const QWidget* a, const QWidget* b) {
    const QString panel = QStringLiteral("Vantorel");
    return std::pair(a->windowTitle() != panel, a->windowTitle()) <
           std::pair(b->windowTitle() != panel, b->windowTitle());
  });
  return shown;
}

void paintGround(QPainter& painter, const QRectF& area, Ground ground) {
  const QColor desktop(0x3b, 0x5b, 0x7a);
  if (ground == Ground::plain) return painter.fillRect(area, desktop);
  if (ground == Ground::white) return painter.fillRect(area, Qt::white);
  if (ground == Ground::black) return painter.fillRect(area, Qt::black);
  QLinearGradient gradient(area.topLeft(), area.bottomRight());
  gradient.setColorAt(0, desktop);
  gradient.setColorAt(1, QColor(0xe0, 0xa0, 0x70));
  painter.fillRect(area, gradient);
}

/// The shadows of windows, where a page lies behind them that they fall on.
void paintShadows(QPainter& painter, const QPoint& corner) {
  constexpr double panelRadius = 18;
  const auto tile = ShadowDrawing::tile(ShadowDrawing::ofWindow, panelRadius,
                                        painter.device()->devicePixelRatioF());
  const auto windows = QGuiApplication::topLevelWindows();
  for (const auto* window : windows) {
    if (!window->isVisible() || window->title() != QStringLiteral("Shadow")) continue;
    painter.save();
    painter.translate(window->position() - corner);
    ShadowDrawing::draw(painter, window->size(), tile);
    painter.restore();
  }
}

/// By way of a picture of its own, for a menu wipes what it is drawn on.
QImage pictureOf(QWidget& window, double scale) {
  QImage picture(window.size() * scale, QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  window.render(&picture, {}, {}, QWidget::DrawChildren);
  return picture;
}

}  // namespace

QWidget* shownWindow(const char* title) {
  const auto windows = shownWindows();
  for (auto* window : windows) {
    if (window->windowTitle() == QString::fromUtf8(title)) return window;
  }
  return nullptr;
}

QImage pictureOfShownWindows(Ground ground) {
  const auto windows = shownWindows();
  if (windows.empty()) return {};
  QRect place;
  for (const auto* window : windows) place |= window->geometry();
  const int around = ground == Ground::white ? ShadowDrawing::ofWindow.reach : margin;
  place.adjust(-around, -around, around, around);
  const double scale = windows.front()->devicePixelRatioF();
  QImage image(place.size() * scale, QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  QPainter painter(&image);
  paintGround(painter, QRectF({}, QSizeF(place.size())), ground);
  if (ground == Ground::white) paintShadows(painter, place.topLeft());
  for (auto* window : windows) {
    const QPoint corner = window->pos() - place.topLeft();
    painter.setClipping(false);
    if (!window->mask().isEmpty()) painter.setClipRegion(window->mask().translated(corner));
    painter.drawImage(corner, pictureOf(*window, scale));
  }
  return image;
}

QImage pictureOnGround(QWidget& window, Ground ground, double scale) {
  QImage image(window.size() * scale, QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  QPainter painter(&image);
  paintGround(painter, QRectF({}, QSizeF(window.size())), ground);
  painter.drawImage(0, 0, pictureOf(window, scale));
  return image;
}

QImage pictureOf(const Look& look) {
  QImage picture;
  {
    const auto shown = look.show();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();  // a shadow comes after its window
    picture = pictureOfShownWindows(look.ground);
  }
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  return picture;
}

}  // namespace vantorel
