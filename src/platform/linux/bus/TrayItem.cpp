// SPDX-License-Identifier: MIT
#include "platform/linux/bus/TrayItem.h"

#include <utility>

namespace vantorel {

void TrayItem::setActive(bool active) {
  if (std::exchange(active_, active) != active) emit NewStatus(status());
}

void TrayItem::setIcon(const QString& name, const QString& themePath, QList<TrayPixmap> pictures) {
  iconName_ = name;
  themePath_ = themePath;
  pictures_ = std::move(pictures);
  emit NewIcon();
}

void TrayItem::setToolTip(const QString& text) {
  if (toolTip_ == text) return;
  toolTip_ = text;
  emit NewToolTip();
}

QString TrayItem::status() const {
  return active_ ? QStringLiteral("Active") : QStringLiteral("Passive");
}

TrayToolTip TrayItem::toolTip() const { return {{}, {}, toolTip_, {}}; }

void TrayItem::Activate(int /*x*/, int /*y*/) {
  if (onActivate) onActivate();
}

void TrayItem::SecondaryActivate(int /*x*/, int /*y*/) {
  if (onSecondaryActivate) onSecondaryActivate();
}

void TrayItem::ContextMenu(int x, int y) {
  if (onContextMenu) onContextMenu(x, y);
}

void TrayItem::Scroll(int /*delta*/, const QString& /*orientation*/) {}

void TrayItem::ProvideXdgActivationToken(const QString& /*token*/) {}

}  // namespace vantorel
