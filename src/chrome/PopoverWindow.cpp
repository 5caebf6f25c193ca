#include "chrome/PopoverWindow.h"

#include <QCloseEvent>
#include <QVariantAnimation>
#include <algorithm>
#include <cmath>

#include "chrome/ReadableGlassView.h"
#include "chrome/WindowGlass.h"

namespace vantorel {
namespace {

constexpr int fadeMilliseconds = 90;

/// The part of the desktop that may be used around `anchor`; the anchor itself without screens.
Rect areaAround(const Screens& screens, const Rect& anchor) {
  const Point middle{anchor.midX(), anchor.midY()};
  const auto all = screens.screens();
  const auto found = std::find_if(
      all.begin(), all.end(), [&](const Screen& screen) { return screen.frame.contains(middle); });
  if (found != all.end()) return found->visibleFrame;
  const auto main = screens.mainScreen();
  return main ? main->visibleFrame : anchor;
}

}  // namespace

PopoverWindow::PopoverWindow(const QString& title, QSize size, double cornerRadius,
                             const ChromeServices& services)
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus),
      services_(services),
      glass_(new ReadableGlassView(cornerRadius, this)),
      fade_(new QVariantAnimation(this)) {
  setWindowTitle(title);
  setAccessibleName(title);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_QuitOnClose, false);
  setFixedSize(size);
  glass_->setGeometry(rect());
  new WindowGlass({*this, cornerRadius, services_.accessibility, services_.backdrops},
                  [this](const GlassFinish& finish) { glass_->setFinish(finish); });
  fade_->setDuration(fadeMilliseconds);
  fade_->setStartValue(0.0);
  fade_->setEndValue(1.0);
  connect(fade_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { setWindowOpacity(value.toDouble()); });
}

void PopoverWindow::show(const Rect& anchor, PopoverEdge edge) {
  const auto frame =
      popoverFrame(anchor, edge, width(), height(), areaAround(services_.screens, anchor));
  move(static_cast<int>(std::lround(frame.x)), static_cast<int>(std::lround(frame.y)));
  fade_->stop();
  const auto finish = glassFinish(services_.accessibility, services_.backdrops);
  const bool fades = finish.outline == GlassFinish::Outline::blended;
  if (fades && !services_.accessibility.reduceMotion()) {
    fadeIn();
  } else {
    setWindowOpacity(1);
  }
  QWidget::show();
  raise();
}

void PopoverWindow::fadeIn() {
  setWindowOpacity(0);
  fade_->start();
}

void PopoverWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  if (event->spontaneous() && onClosed) onClosed();
}

}  // namespace vantorel
