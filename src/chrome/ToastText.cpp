// SPDX-License-Identifier: MIT
#include "chrome/ToastText.h"

#include <QFontMetrics>
#include <QTextLayout>

#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double pointsOfOneLine = 12.5;
constexpr double pointsOfTwoLines = 12;
constexpr int narrowestStretch = 80;  // of a hundred; tighter letters are hard to read

QFont toastFont(double points, int stretch) {
  QFont font = VantorelTheme::systemFont(points, QFont::Medium);
  if (stretch != QFont::Unstretched) font.setStretch(stretch);
  return font;
}

/// How much of the message the first of two lines takes.
qsizetype lengthOfFirstLine(const QString& message, const QFont& font, int width) {
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  QTextLayout layout(message, font);
  layout.setTextOption(option);
  layout.beginLayout();
  auto line = layout.createLine();
  line.setLineWidth(width);
  const auto length = line.textLength();
  layout.endLayout();
  return length;
}

}  // namespace

ToastText ToastText::fitted(const QString& message, int width) {
  for (int stretch = QFont::Unstretched; stretch >= narrowestStretch; --stretch) {
    const QFont font = toastFont(pointsOfOneLine, stretch);
    if (QFontMetrics(font).horizontalAdvance(message) <= width) return {message, font};
  }
  ToastText result;
  for (const int stretch : {static_cast<int>(QFont::Unstretched), narrowestStretch}) {
    result.font = toastFont(pointsOfTwoLines, stretch);
    const auto length = lengthOfFirstLine(message, result.font, width);
    const auto rest = message.mid(length).trimmed();
    const auto end = QFontMetrics(result.font).elidedText(rest, Qt::ElideRight, width);
    result.text = message.left(length).trimmed() + u'\n' + end;
    if (end == rest) break;
  }
  return result;
}

}  // namespace vantorel
