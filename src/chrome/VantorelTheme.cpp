// SPDX-License-Identifier: MIT
#include "chrome/VantorelTheme.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace vantorel::VantorelTheme {
namespace {

// Chosen so that small text keeps a contrast of 4.5 to 1 on the usual light and dark windows, on
// the washes of rows and through glass, and what is out of use 3 to 1.
constexpr float secondaryAlpha = 0.76F;
constexpr float tertiaryAlpha = 0.58F;

QColor faded(QColor color, float alpha) {
  color.setAlphaF(color.alphaF() * alpha);
  return color;
}

}  // namespace

QColor gold() { return QColor::fromRgbF(0.93F, 0.66F, 0.16F); }
QColor goldSoft() { return faded(gold(), 0.18F); }
QColor goldStrong() { return faded(gold(), 0.14F); }

QColor sign(const QColor& color, const QPalette& palette) {
  constexpr int darker = 175;
  return isDark(palette) ? color : color.darker(darker);
}

QColor label(const QPalette& palette) {
  return palette.color(QPalette::Active, QPalette::WindowText);
}
QColor secondaryLabel(const QPalette& palette) { return faded(label(palette), secondaryAlpha); }
QColor tertiaryLabel(const QPalette& palette) { return faded(label(palette), tertiaryAlpha); }
QColor window(const QPalette& palette) { return palette.color(QPalette::Active, QPalette::Window); }

QColor labelWash(const QPalette& palette, double alpha) {
  return faded(label(palette), static_cast<float>(alpha));
}

bool isDark(const QPalette& palette) {
  return window(palette).lightnessF() < label(palette).lightnessF();
}

void setSelectionColors(QPalette& palette) {
  constexpr float washAlpha = 0.4F;
  palette.setColor(QPalette::Highlight, faded(gold(), washAlpha));
  palette.setColor(QPalette::HighlightedText, label(palette));
}

void setTextColor(QWidget& label, const QColor& color) {
  QPalette colors = label.palette();
  if (colors.color(QPalette::WindowText) == color) return;
  colors.setColor(QPalette::WindowText, color);
  label.setPalette(colors);
}

QFont systemFont(double points, QFont::Weight weight) {
  constexpr double typographicPointsPerInch = 72;
  QFont font = QGuiApplication::font();
  const auto* screen = QGuiApplication::primaryScreen();
  const double dotsPerInch = screen != nullptr ? screen->logicalDotsPerInchY() : 96;
  font.setPointSizeF(points * typographicPointsPerInch / dotsPerInch);
  font.setWeight(weight);
  return font;
}

}  // namespace vantorel::VantorelTheme
