// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/LinuxStatusItem.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/linux/x11/TrayInk.h"

namespace vantorel {
namespace {

constexpr double iconPoints = 22;
constexpr int menuGap = 3;  // pixels between the icon and its menu

/// A dark desktop has dark bars. A light one may have either.
std::uint32_t inkOfDesktop() {
  const auto window = QGuiApplication::palette().color(QPalette::Window);
  const bool isDark =
      window.lightnessF() < QGuiApplication::palette().color(QPalette::WindowText).lightnessF();
  return isDark ? inkOn(window.rgb() & 0xffffffU) : inkAnywhere;
}

}  // namespace

LinuxStatusItem::LinuxStatusItem(Services services, Trays trays, std::filesystem::path iconThemes)
    : services_(services), trays_(trays), notifier_(services, std::move(iconThemes)) {
  notifier_.setInk(inkOfDesktop());
  notifier_.onHost = [this](bool isThere) {
    hasHost_ = isThere;
    place();
  };
  qGuiApp->installEventFilter(this);
}

LinuxStatusItem::~LinuxStatusItem() = default;

bool LinuxStatusItem::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ApplicationPaletteChange) notifier_.setInk(inkOfDesktop());
  return QObject::eventFilter(watched, event);
}

void LinuxStatusItem::show(Handlers handlers) {
  handlers_ = std::move(handlers);
  notifier_.show(*handlers_);
  place();
}

void LinuxStatusItem::hide() {
  handlers_.reset();
  notifier_.hide();
  place();
}

void LinuxStatusItem::setImage(StatusImage image) {
  image_ = image;
  notifier_.setImage(std::move(image));
  if (icon_) icon_->pictureChanged();
}

void LinuxStatusItem::setToolTip(std::string toolTip) {
  toolTip_ = toolTip;
  if (icon_) icon_->setTitle(toolTip);
  notifier_.setToolTip(std::move(toolTip));
}

void LinuxStatusItem::menuChanged() { notifier_.menuChanged(); }

// Until it is known whether the other kind shows the item, this one does not: it would only flash.
void LinuxStatusItem::place() {
  const bool wanted = handlers_ && hasHost_ == false;
  if (!wanted) {
    if (icon_) icon_->hide();
    return;
  }
  if (!icon_ && !openIcon()) {
    tellUnseen();
    return;
  }
  double scale = 1;
  for (const auto& screen : services_.screens.screens()) scale = std::max(scale, screen.scale);
  icon_->show(static_cast<int>(std::lround(iconPoints * scale)));
}

bool LinuxStatusItem::openIcon() {
  if (trays_ == Trays::ofItems) return false;
  icon_ = X11TrayIcon::open(
      services_.dispatch,
      {.picture = [this](int side) { return image_.drawn ? image_.drawn(side) : nullptr; },
       .onClick = [this](const TrayClick& click) { clicked(click); },
       .onMissing = [this] { tellUnseen(); }});
  if (icon_) icon_->setTitle(toolTip_);
  return icon_ != nullptr;
}

void LinuxStatusItem::tellUnseen() {
  if (!handlers_ || std::exchange(toldUnseen_, true)) return;
  const Handlers handlers = *handlers_;
  if (handlers.onUnseen) handlers.onUnseen();
}

void LinuxStatusItem::clicked(const TrayClick& click) {
  if (!handlers_) return;
  // Each handler may hide the item, and so end the others while it runs.
  const Handlers handlers = *handlers_;
  switch (click.button) {
    case TrayClick::Button::left:
      if (handlers.onClick) handlers.onClick();
      break;
    case TrayClick::Button::middle:
      if (handlers.onMiddleClick) handlers.onMiddleClick();
      break;
    case TrayClick::Button::right: {
      if (!handlers.onMenuWanted) break;
      // Below an icon in the upper half of its screen, else above it.
      const auto icon = pointOfPixel(services_.screens, click.x, click.y);
      const auto screen = screenNear(services_.screens, icon);
      const auto frame = screen ? screen->frame : Rect{};
      const bool isHigh = icon.y < frame.midY();
      const int y = isHigh ? click.y + click.height + menuGap : click.y - menuGap;
      handlers.onMenuWanted(pointOfPixel(services_.screens, click.x, y));
      break;
    }
  }
}

}  // namespace vantorel
