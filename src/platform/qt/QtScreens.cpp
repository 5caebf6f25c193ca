// SPDX-License-Identifier: MIT
#include "platform/qt/QtScreens.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace vantorel {
namespace {

Rect rect(const QRect& of) {
  return {static_cast<double>(of.x()), static_cast<double>(of.y()), static_cast<double>(of.width()),
          static_cast<double>(of.height())};
}

Screen screen(const QScreen& of) {
  return {rect(of.geometry()), rect(of.availableGeometry()), of.devicePixelRatio()};
}

}  // namespace

std::vector<Screen> QtScreens::screens() const {
  std::vector<Screen> all;
  for (const QScreen* each : QGuiApplication::screens()) all.push_back(screen(*each));
  return all;
}

std::optional<Screen> QtScreens::mainScreen() const {
  const QScreen* primary = QGuiApplication::primaryScreen();
  if (primary == nullptr) return std::nullopt;
  return screen(*primary);
}

Point QtScreens::mouseLocation() const {
  const QPoint at = QCursor::pos();
  return {static_cast<double>(at.x()), static_cast<double>(at.y())};
}

}  // namespace vantorel
