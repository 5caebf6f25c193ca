// SPDX-License-Identifier: MIT
#include "chrome/VantorelPanel.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

#include "chrome/AccessibleRole.h"
#include "chrome/WindowGlass.h"
#include "chrome/WindowShadow.h"

namespace vantorel {
namespace {

/// Tells what the pointer is over that it has left: when the window comes up again, the pointer may
/// be elsewhere.
void sendLeaveEvents(QWidget& window) {
  const auto parts = window.findChildren<QWidget*>();
  for (auto* part : parts) {
    if (!part->testAttribute(Qt::WA_UnderMouse)) continue;
    part->setAttribute(Qt::WA_UnderMouse, false);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(part, &leave);
  }
}

}  // namespace

VantorelPanel::VantorelPanel(const QString& title, QSize size, double cornerRadius,
                             const AccessibilityPreferences& accessibility,
                             const WindowBackdrops* backdrops, Kind kind)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      glass_(new ReadableGlassView(cornerRadius, this)) {
  setAccessibleRole(*this, kind == Kind::window ? QAccessible::Window : QAccessible::Dialog);
  setWindowTitle(title);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_QuitOnClose, false);
  resize(size);
  glass_->setGeometry(rect());
  winId();
  windowHandle()->installEventFilter(this);
  new WindowGlass({*this, cornerRadius, accessibility, backdrops},
                  [this](const GlassFinish& finish) { glass_->setFinish(finish); });
  new WindowShadow(*this, cornerRadius, backdrops);
}

void VantorelPanel::makeKeyAndOrderFront() {
  if (!isVisible()) wasSeen_ = false;
  show();
  raise();
  activateWindow();
}

bool VantorelPanel::wasPutOutOfSight() const {
  return isVisible() && wasSeen_ && !windowHandle()->isExposed();
}

bool VantorelPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == windowHandle() && event->type() == QEvent::KeyPress && isVisible() && onKeyPress) {
    return onKeyPress(static_cast<const QKeyEvent&>(*event));
  }
  if (watched == windowHandle() && event->type() == QEvent::Expose && isVisible()) {
    wasSeen_ = wasSeen_ || windowHandle()->isExposed();
  }
  return QWidget::eventFilter(watched, event);
}

void VantorelPanel::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  tellFrame();
}

void VantorelPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  glass_->setGeometry(rect());
  tellFrame();
}

/// Once for each change: the window system confirms later what was done at once.
void VantorelPanel::tellFrame() {
  if (geometry() == toldFrame_) return;
  toldFrame_ = geometry();
  if (onFrameChange) onFrameChange();
}

void VantorelPanel::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || windowHandle() == nullptr) return;
  windowHandle()->startSystemMove();
}

void VantorelPanel::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (onCloseRequested) onCloseRequested();
}

void VantorelPanel::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  sendLeaveEvents(*this);
}

}  // namespace vantorel
