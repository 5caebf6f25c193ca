// SPDX-License-Identifier: MIT
#include "app/CodeBlock.h"

#include <QPainter>
#include <QTextLayout>
#include <cmath>

#include "app/ShortcutPill.h"
#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double fontPoints = 12;
constexpr double pitch = 17;
constexpr int inset = 9;
constexpr double cornerRadius = 9;
constexpr double groundAlpha = 0.06;

}  // namespace

CodeBlock::CodeBlock(const QString& code, int width, QWidget* parent)
    : QLabel(parent), width_(width) {
  setTextFormat(Qt::PlainText);
  setLayoutDirection(Qt::LeftToRight);
  setFont(monospacedFont(fontPoints, QFont::Normal));
  setCode(code);
}

void CodeBlock::setCode(const QString& code) {
  setText(code);
  setAccessibleName(code);
  setFixedSize(CodeBlock::sizeHint());
}

QSize CodeBlock::sizeHint() const {
  return {width_, static_cast<int>(std::ceil(lines(nullptr) * pitch)) + 2 * inset};
}

/// Counts the lines, and draws them where there is a painter.
int CodeBlock::lines(QPainter* painter) const {
  // Options begin with hyphens: no line ends behind one.
  auto words = text();
  words.replace(u'-', QStringLiteral("-\u2060"));
  QTextLayout layout(words, font());
  QTextOption option(Qt::AlignLeft);
  option.setTextDirection(Qt::LeftToRight);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  layout.beginLayout();
  int count = 0;
  for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width_ - 2 * inset);
    line.setPosition({inset, inset + pitch * count + (pitch - line.height()) / 2});
    ++count;
  }
  layout.endLayout();
  if (painter != nullptr) layout.draw(painter, {});
  return count;
}

void CodeBlock::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(VantorelTheme::labelWash(palette(), groundAlpha));
  painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
  painter.setPen(VantorelTheme::label(palette()));
  lines(&painter);
}

}  // namespace vantorel
