// SPDX-License-Identifier: MIT
#include "ui/looks/FixedSurroundings.h"

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QStyleFactory>

namespace vantorel {
namespace {

QPalette lightPalette() {
  QPalette palette(QColor(0xef, 0xef, 0xef));
  palette.setColor(QPalette::Window, QColor(0xef, 0xef, 0xef));
  palette.setColor(QPalette::WindowText, Qt::black);
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::Text, Qt::black);
  palette.setColor(QPalette::Button, QColor(0xef, 0xef, 0xef));
  palette.setColor(QPalette::ButtonText, Qt::black);
  palette.setColor(QPalette::Highlight, QColor(0x30, 0x8c, 0xc6));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  return palette;
}

QPalette darkPalette() {
  const QColor text(0xf2, 0xf2, 0xf2);
  QPalette palette(QColor(0x2b, 0x2b, 0x2e));
  palette.setColor(QPalette::Window, QColor(0x2b, 0x2b, 0x2e));
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::Button, QColor(0x3a, 0x3a, 0x3d));
  palette.setColor(QPalette::ButtonText, text);
  palette.setColor(QPalette::Highlight, QColor(0x3d, 0x6f, 0xb8));
  palette.setColor(QPalette::HighlightedText, text);
  return palette;
}

}  // namespace

void fixSurroundings() {
  for (const char* name : {"QT_FONT_DPI", "QT_SCREEN_SCALE_FACTORS", "QT_ENABLE_HIGHDPI_SCALING",
                           "QT_USE_PHYSICAL_DPI", "QT_SCALE_FACTOR_ROUNDING_POLICY",
                           "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME", "LANGUAGE",
                           "FONTCONFIG_SYSROOT", "FREETYPE_PROPERTIES", "XDG_CURRENT_DESKTOP"}) {
    qunsetenv(name);
  }
  const auto scale = qgetenv("VANTOREL_LOOKS_SCALE");
  qputenv("QT_SCALE_FACTOR", scale.isEmpty() ? "1" : scale);
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" VANTOREL_LOOKS_SCREEN);
  qputenv("FONTCONFIG_FILE", VANTOREL_LOOKS_FONTS);
  qputenv("XDG_CONFIG_HOME", VANTOREL_LOOKS_OUTPUT);
  qputenv("LC_ALL", "C.UTF-8");
  qputenv("TZ", "UTC");
}

void fixApplication() {
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setCursorFlashTime(0);  // a caret is there all the time
  QApplication::setFont(QFont(QStringLiteral("Noto Sans")));
}

void setAppearance(Appearance appearance) {
  QApplication::setPalette(appearance == Appearance::dark ? darkPalette() : lightPalette());
}

}  // namespace vantorel
