#include "chrome/VantorelPanel.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

namespace vantorel {

VantorelPanel::VantorelPanel(const QString& title, QSize size, double cornerRadius,
                             const AccessibilityPreferences& accessibility,
                             const WindowBackdrops* backdrops)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      accessibility_(accessibility),
      backdrops_(backdrops),
      glass_(new ReadableGlassView(cornerRadius, this)) {
  setWindowTitle(title);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_QuitOnClose, false);
  resize(size);
  glass_->setGeometry(rect());
  winId();
  windowHandle()->installEventFilter(this);
}

void VantorelPanel::makeKeyAndOrderFront() {
  glass_->setFinish(glassFinish(accessibility_, backdrops_));
  applyOutline();
  show();
  raise();
  activateWindow();
}

bool VantorelPanel::eventFilter(QObject* watched, QEvent* event) {
  if (watched == windowHandle() && event->type() == QEvent::KeyPress && isVisible() && onKeyPress) {
    return onKeyPress(static_cast<const QKeyEvent&>(*event));
  }
  return QWidget::eventFilter(watched, event);
}

void VantorelPanel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  glass_->setGeometry(rect());
  applyOutline();
}

void VantorelPanel::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || windowHandle() == nullptr) return;
  windowHandle()->startSystemMove();
}

void VantorelPanel::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (onCloseRequested) onCloseRequested();
}

void VantorelPanel::applyOutline() {
  if (glass_->finish().outline == GlassFinish::Outline::shaped) {
    setMask(glass_->outline());
  } else if (!mask().isEmpty()) {
    clearMask();
  }
}

}  // namespace vantorel
