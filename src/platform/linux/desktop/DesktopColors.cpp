// SPDX-License-Identifier: MIT
#include "platform/linux/desktop/DesktopColors.h"

#include <QGuiApplication>
#include <QPalette>
#include <utility>

#include "platform/linux/portal/Portal.h"
#include "platform/linux/settings/ColorScheme.h"

namespace vantorel {
namespace {

bool isDark(const QPalette& colors) {
  return colors.color(QPalette::Window).lightnessF() <
         colors.color(QPalette::WindowText).lightnessF();
}

QPalette darkColors() {
  const QColor window(0x2b, 0x2b, 0x2e);
  const QColor text(0xf2, 0xf2, 0xf2);
  const QColor faintText(0x96, 0x96, 0x99);
  const QColor accent(0xed, 0xa8, 0x29);
  QPalette colors(window);
  colors.setColor(QPalette::Window, window);
  colors.setColor(QPalette::Base, QColor(0x1f, 0x1f, 0x21));
  colors.setColor(QPalette::AlternateBase, window);
  colors.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3d));
  colors.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3a, 0x3d));
  colors.setColor(QPalette::Highlight, accent);
  colors.setColor(QPalette::HighlightedText, QColor(0x1f, 0x1f, 0x21));
  colors.setColor(QPalette::PlaceholderText, faintText);
  colors.setColor(QPalette::Link, accent);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                          QPalette::ToolTipText, QPalette::BrightText}) {
    colors.setColor(role, text);
    colors.setColor(QPalette::Disabled, role, faintText);
  }
  return colors;
}

}  // namespace

DesktopColors::DesktopColors(const DesktopSettings& settings, Portal& portal,
                             std::string environmentTheme)
    : settings_(settings),
      portal_(portal),
      environmentTheme_(std::move(environmentTheme)),
      toolkitColors_(QGuiApplication::palette()),
      settingsObservation_(settings.observe([this] { apply(); })),
      portalObservation_(portal.observe([this] { apply(); })) {
  apply();
}

void DesktopColors::apply() {
  if (isDark(toolkitColors_)) return;
  const bool dark = colorScheme(portal_.answers().scheme, environmentTheme_, settings_.theme()) ==
                    ColorScheme::dark;
  if (dark == applied_) return;
  applied_ = dark;
  QGuiApplication::setPalette(dark ? darkColors() : toolkitColors_);
}

}  // namespace vantorel
