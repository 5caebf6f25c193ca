// SPDX-License-Identifier: MIT
#include "chrome/PopoverWindow.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QVariantAnimation>
#include <QWindow>

#include "chrome/AccessibleRole.h"
#include "chrome/Geometry.h"
#include "chrome/ReadableGlassView.h"
#include "chrome/WindowGlass.h"

namespace vantorel {
namespace {

constexpr int fadeMilliseconds = 90;

/// On Wayland a window as a whole has no opacity, and the toolkit says so at each step.
bool windowsFade() { return QGuiApplication::platformName() != QLatin1String("wayland"); }

}  // namespace

PopoverWindow::PopoverWindow(const QString& title, QSize size, double cornerRadius,
                             const ChromeServices& services)
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus),
      services_(services),
      glass_(new ReadableGlassView(cornerRadius, this)),
      fade_(new QVariantAnimation(this)) {
  setAccessibleRole(*this, QAccessible::ToolTip);
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
  const auto screen = screenNear(services_.screens, {anchor.midX(), anchor.midY()});
  const auto frame =
      popoverFrame(anchor, edge, width(), height(), screen ? screen->visibleFrame : anchor);
  move(toQPoint({frame.x, frame.y}));
  fade_->stop();
  const auto finish = glassFinish(services_.accessibility, services_.backdrops);
  const bool fades = finish.outline == GlassFinish::Outline::blended;
  if (fades && windowsFade() && !services_.accessibility.reduceMotion()) {
    fadeIn();
  } else if (windowOpacity() < 1) {
    setWindowOpacity(1);
  }
  create();  // does nothing when there is a native window already
  windowHandle()->setTransientParent(owner_ != nullptr ? owner_->windowHandle() : nullptr);
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
