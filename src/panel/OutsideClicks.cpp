// SPDX-License-Identifier: MIT
#include "panel/OutsideClicks.h"

#include <QApplication>
#include <cmath>

#include "panel/HistoryPanelView.h"

namespace vantorel {
namespace {

/// Whether the pointer is over any window of this program that it can press something in, such as
/// a preview.
bool isOnOwnWindow(Point point) {
  const QPoint place(static_cast<int>(std::floor(point.x)), static_cast<int>(std::floor(point.y)));
  // Asks the window system, which knows what lies on top.
  const auto* window = QApplication::topLevelAt(place);
  return window != nullptr && !window->windowFlags().testFlag(Qt::WindowTransparentForInput);
}

}  // namespace

void OutsideClicks::watch() {
  monitor_ = monitors_.addGlobalMouseDownMonitor(life_.guard([this] { pressed(); }));
}

void OutsideClicks::pressed() {
  if (!view_.panel.isVisible() || (ignores && ignores())) return;
  const Point mouse = screens_.mouseLocation();
  if (view_.frame().contains(mouse) || isOnOwnWindow(mouse)) return;
  dispatch_.async(life_.guard([this] {
    if (onClick) onClick();
  }));
}

}  // namespace vantorel
