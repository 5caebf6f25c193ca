// SPDX-License-Identifier: MIT
#include "chrome/ToolTipPanel.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <algorithm>

#include "chrome/GlassDrawing.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double cornerRadius = 6;
constexpr double fontPoints = 11.5;
constexpr int marginX = 9;
constexpr int marginY = 5;
constexpr int gap = 4;  // to the control

QPointer<ToolTipPanel>& shown() {
  static QPointer<ToolTipPanel> panel;
  return panel;
}

}  // namespace

ToolTipPanel::ToolTipPanel(QWidget& control, const QRect& part, const QString& text)
    : QWidget(&control, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                            Qt::WindowDoesNotAcceptFocus),
      control_(control),
      part_(part),
      text_(text) {
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_DeleteOnClose);
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowTitle(QStringLiteral("Tooltip"));
  setFont(VantorelTheme::systemFont(fontPoints));
  setFixedSize(fontMetrics().horizontalAdvance(text) + 2 * marginX,
               fontMetrics().height() + 2 * marginY);
  setMask(GlassDrawing::outline(size(), cornerRadius));
  QCoreApplication::instance()->installEventFilter(this);
}

void ToolTipPanel::show(QWidget& control, const QRect& part, const QString& text) {
  if (shown()) shown()->close();
  if (text.isEmpty()) return;
  shown() = new ToolTipPanel(control, part, text);
  shown()->place();
  shown()->setVisible(true);
}

/// Above the control where there is no room below it.
void ToolTipPanel::place() {
  const QRect beside(control_.mapToGlobal(part_.topLeft()), part_.size());
  const QRect area = control_.screen()->availableGeometry();
  const bool fits = beside.bottom() + gap + height() <= area.bottom();
  const int y = fits ? beside.bottom() + 1 + gap : beside.top() - gap - height();
  const int last = std::max(area.left(), area.right() + 1 - width());
  move(std::clamp(beside.right() + 1 - width(), area.left(), last), y);
}

bool ToolTipPanel::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Leave:
    case QEvent::Hide:
      if (watched == &control_) close();
      break;
    case QEvent::MouseMove:
      if (watched != &control_) break;
      if (!part_.contains(static_cast<const QMouseEvent*>(event)->position().toPoint())) close();
      break;
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
    case QEvent::WindowDeactivate:
      close();
      break;
    default:
      break;
  }
  return false;
}

void ToolTipPanel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  GlassDrawing::draw(painter, rect(), cornerRadius, GlassFinish(), palette());
  painter.setPen(VantorelTheme::label(palette()));
  painter.drawText(rect(), static_cast<int>(Qt::AlignCenter) | Qt::TextSingleLine, text_);
}

}  // namespace vantorel
