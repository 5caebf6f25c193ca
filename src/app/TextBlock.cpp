// SPDX-License-Identifier: MIT
#include "app/TextBlock.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

// Of the font's size. Fonts that serve many scripts claim more than Hebrew and Latin need.
constexpr double pitchOfLines = 1.2;

/// How far letters would reach below a line of `pitch` if the font's whole height stood in its
/// middle.
int overhang(const QFontMetricsF& metrics, int pitch) {
  const double baseline = (pitch - metrics.height()) / 2 + metrics.ascent();
  const double lowest = metrics.tightBoundingRect(QStringLiteral("gjpqyQ")).bottom();
  return std::max(0, static_cast<int>(std::ceil(baseline + lowest - pitch)));
}

}  // namespace

QFont documentFont(double points, QFont::Weight weight) {
  QFont font = VantorelTheme::systemFont(points, weight);
  QStringList families = font.families();
  if (families.isEmpty()) families.append(font.family());
  families << QStringLiteral("Noto Sans Hebrew") << QStringLiteral("Open Sans")
           << QStringLiteral("DejaVu Sans");
  font.setFamilies(families);
  return font;
}

TextBlock::TextBlock(const QString& text, const Style& style, QWidget* parent)
    : QLabel(text, parent), style_(style) {
  setTextFormat(Qt::PlainText);
  setFont(documentFont(style.points, style.weight));
  setAccessibleName(text);
}

int TextBlock::linePitch() const {
  return static_cast<int>(std::ceil(style_.points * pitchOfLines));
}

QSize TextBlock::sizeHint() const {
  const auto lines = brokenLines();
  int width = style_.width;
  if (width == 0) {
    for (const auto& line : lines) {
      width = std::max(width, fontMetrics().horizontalAdvance(line) + 2);
    }
  }
  return {width, static_cast<int>(lines.size()) * linePitch()};
}

std::vector<QString> TextBlock::brokenLines() const {
  std::vector<QString> lines;
  const auto paragraphs = text().split(u'\n');
  for (const auto& paragraph : paragraphs) {
    const auto more = wrapped(paragraph);
    lines.insert(lines.end(), more.begin(), more.end());
  }
  const auto limit = static_cast<std::size_t>(style_.lines);
  if (lines.size() > limit) {
    lines.resize(limit);
    lines.back() += QStringLiteral("…");
  }
  return lines;
}

std::vector<QString> TextBlock::wrapped(const QString& paragraph) const {
  if (style_.width == 0) return {paragraph};
  QTextOption option;
  option.setTextDirection(style_.direction);
  option.setWrapMode(QTextOption::WordWrap);
  QTextLayout layout(paragraph, font());
  layout.setTextOption(option);
  std::vector<QString> lines;
  layout.beginLayout();
  for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(style_.width);
    lines.push_back(paragraph.mid(line.textStart(), line.textLength()).trimmed());
  }
  layout.endLayout();
  return lines;
}

void TextBlock::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(style_.importance == Importance::primary
                     ? VantorelTheme::label(palette())
                     : VantorelTheme::secondaryLabel(palette()));
  const auto direction =
      style_.direction == Qt::RightToLeft ? Qt::TextForceRightToLeft : Qt::TextForceLeftToRight;
  const int flags = static_cast<int>(style_.alignment) | static_cast<int>(Qt::AlignAbsolute) |
                    static_cast<int>(Qt::AlignVCenter) | static_cast<int>(Qt::TextSingleLine) |
                    static_cast<int>(Qt::TextDontClip) | static_cast<int>(direction);
  int top = -overhang(QFontMetricsF(font()), linePitch());
  for (const auto& line : brokenLines()) {
    painter.drawText(QRect(0, top, width(), linePitch()), flags, line);
    top += linePitch();
  }
}

}  // namespace vantorel
