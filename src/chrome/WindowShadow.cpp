// SPDX-License-Identifier: MIT
#include "chrome/WindowShadow.h"

#include <QEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QWidget>

#include "chrome/ShadowDrawing.h"

namespace vantorel {

class WindowShadow::Surface : public QRasterWindow {
 public:
  explicit Surface(double cornerRadius) : cornerRadius_(cornerRadius) {
    // What no window manager manages stays where it is put.
    setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
             Qt::WindowDoesNotAcceptFocus);
    QSurfaceFormat translucent;
    constexpr int bits = 8;
    translucent.setAlphaBufferSize(bits);
    setFormat(translucent);
    setTitle(QStringLiteral("Shadow"));
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    const double scale = devicePixelRatio();
    if (tile_.isNull() || tile_.devicePixelRatio() != scale) {
      tile_ = ShadowDrawing::tile(ShadowDrawing::ofWindow, cornerRadius_, scale);
    }
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QRect({}, size()), Qt::transparent);
    ShadowDrawing::draw(painter, size(), tile_);
  }

 private:
  double cornerRadius_;
  QImage tile_;
};

WindowShadow::WindowShadow(QWidget& window, double cornerRadius, const WindowBackdrops* backdrops)
    : QObject(&window), window_(window), cornerRadius_(cornerRadius), backdrops_(backdrops) {
  if (backdrops_ == nullptr) return;
  window_.installEventFilter(this);
  window_.windowHandle()->installEventFilter(this);
}

WindowShadow::~WindowShadow() = default;

bool WindowShadow::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Hide:
      backdropChanges_.reset();
      hide();
      break;
    case QEvent::Expose:
      // In a later turn, when the window has painted itself.
      QMetaObject::invokeMethod(this, &WindowShadow::refresh, Qt::QueuedConnection);
      break;
    case QEvent::WindowActivate:  // it may have been raised
      place();
      break;
    case QEvent::Move:
    case QEvent::Resize:
      if (watched == &window_) follow();
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

bool WindowShadow::isWanted() const {
  return window_.isVisible() && window_.windowHandle()->isExposed() &&
         backdrops_->available() != Backdrop::none && !backdrops_->shadesWindows();
}

void WindowShadow::refresh() {
  if (window_.isVisible() && !backdropChanges_) {
    backdropChanges_ = backdrops_->observe([this] { refresh(); });
  }
  if (!isWanted()) return hide();
  if (surface_ && surface_->isVisible()) return;
  if (!surface_) surface_ = std::make_unique<Surface>(cornerRadius_);
  surface_->setScreen(window_.screen());
  surface_->setTransientParent(window_.windowHandle());
  follow();
  surface_->show();
  place();  // not before: the toolkit makes another native window when it shows this one
}

/// It is kept for the next showing.
void WindowShadow::hide() {
  if (surface_) surface_->hide();
}

void WindowShadow::follow() {
  if (!surface_) return;
  constexpr int reach = ShadowDrawing::ofWindow.reach;
  surface_->setGeometry(window_.geometry().adjusted(-reach, -reach, reach, reach));
}

void WindowShadow::place() {
  if (surface_ && surface_->isVisible())
    backdrops_->placeBelow(surface_->winId(), window_.internalWinId());
}

}  // namespace vantorel
