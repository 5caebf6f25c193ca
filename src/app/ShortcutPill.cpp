// SPDX-License-Identifier: MIT
#include "app/ShortcutPill.h"

#include <QFontDatabase>
#include <QPainter>
#include <algorithm>

#include "chrome/KeySymbols.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr int usualWidth = 160;
constexpr int pillHeight = 29;
constexpr int sideMargin = 14;
constexpr double cornerRadius = 9;
constexpr double fontPoints = 13;

}  // namespace

QFont monospacedFont(double points, QFont::Weight weight) {
  QFont font = VantorelTheme::systemFont(points, weight);
  font.setFamilies(QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
  font.setStyleHint(QFont::Monospace);
  font.setFixedPitch(true);
  return font;
}

ShortcutPill::ShortcutPill(std::string_view display, QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignCenter);
  setLayoutDirection(Qt::LeftToRight);
  setFont(monospacedFont(fontPoints, QFont::DemiBold));
  setShortcut(display);
}

void ShortcutPill::setShortcut(std::string_view display) {
  setText(QString::fromStdString(spelledKeys(display)));
  setAccessibleName(text());
  setFixedSize(ShortcutPill::sizeHint());
}

QSize ShortcutPill::sizeHint() const {
  return {std::max(usualWidth, fontMetrics().horizontalAdvance(text()) + 2 * sideMargin),
          pillHeight};
}

void ShortcutPill::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(VantorelTheme::goldSoft());
  painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
  painter.end();
  QLabel::paintEvent(event);
}

}  // namespace vantorel
