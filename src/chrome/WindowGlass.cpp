// SPDX-License-Identifier: MIT
#include "chrome/WindowGlass.h"

#include <QEvent>
#include <cmath>
#include <utility>

#include "chrome/GlassDrawing.h"

namespace vantorel {
namespace {

/// The pixels of a rounded window on a screen of `scale` pixels per point.
std::vector<PixelRect> pixelsOf(const QWidget& window, double cornerRadius) {
  const double scale = window.devicePixelRatioF();
  const QSize size(static_cast<int>(std::lround(window.width() * scale)),
                   static_cast<int>(std::lround(window.height() * scale)));
  std::vector<PixelRect> pixels;
  for (const QRect& each : GlassDrawing::outline(size, cornerRadius * scale)) {
    pixels.push_back({each.x(), each.y(), each.width(), each.height()});
  }
  return pixels;
}

}  // namespace

WindowGlass::WindowGlass(const Setting& setting, std::function<void(const GlassFinish&)> onFinish)
    : QObject(&setting.window), setting_(setting), onFinish_(std::move(onFinish)) {
  setting_.window.installEventFilter(this);
  refresh();
}

WindowGlass::~WindowGlass() = default;

bool WindowGlass::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Show:
      if (!event->spontaneous()) {
        followDesktop();
        refresh();
      }
      break;
    case QEvent::Hide:
      if (!event->spontaneous()) {
        preferenceChanges_.reset();
        backdropChanges_.reset();
      }
      break;
    case QEvent::WinIdChange:
      blurred_.clear();  // a new window has asked for nothing
      break;
    case QEvent::ScreenChangeInternal:  // to one of another scale
    case QEvent::Resize:
      applyShape();
      applyBlur();
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

/// A hidden window is told when it is shown again.
void WindowGlass::followDesktop() {
  preferenceChanges_ = setting_.accessibility.observe([this] { refresh(); });
  if (setting_.backdrops == nullptr) return;
  backdropChanges_ = setting_.backdrops->observe([this] { refresh(); });
}

void WindowGlass::refresh() {
  finish_ = glassFinish(setting_.accessibility, setting_.backdrops);
  onFinish_(finish_);
  applyShape();
  applyBlur();
}

void WindowGlass::applyShape() {
  if (finish_.outline == GlassFinish::Outline::shaped) {
    setting_.window.setMask(GlassDrawing::outline(setting_.window.size(), setting_.cornerRadius));
  } else if (!setting_.window.mask().isEmpty()) {
    setting_.window.clearMask();
  }
}

void WindowGlass::applyBlur() {
  if (setting_.backdrops == nullptr || setting_.window.internalWinId() == 0) return;
  std::vector<PixelRect> pixels;
  if (finish_.behind == GlassFinish::Behind::blurred) {
    pixels = pixelsOf(setting_.window, setting_.cornerRadius);
  }
  if (pixels == blurred_) return;
  setting_.backdrops->blurBehind(setting_.window.internalWinId(), pixels);
  blurred_ = std::move(pixels);
}

}  // namespace vantorel
