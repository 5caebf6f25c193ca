// SPDX-License-Identifier: MIT
#include "chrome/GlassField.h"

#include <QEvent>
#include <QPainter>

#include "chrome/VantorelTheme.h"

namespace vantorel {
namespace {

constexpr double fillAlpha = 0.06;
constexpr double focusedRim = 1.5;

}  // namespace

GlassField::GlassField(const Look& look, QWidget* parent) : QLineEdit(parent), look_(look) {
  setFrame(false);
  setFont(VantorelTheme::systemFont(look.fontPoints, look.weight));
  applyColors();
}

void GlassField::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool marked = look_.focus == Look::Focus::gold && hasFocus();
    const double rim = marked ? focusedRim : 1;
    const double inset = rim / 2;
    painter.setPen(QPen(marked ? VantorelTheme::sign(VantorelTheme::gold(), palette())
                               : VantorelTheme::labelWash(palette(), look_.rimAlpha),
                        rim));
    painter.setBrush(VantorelTheme::labelWash(palette(), fillAlpha));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                            look_.cornerRadius, look_.cornerRadius);
    drawOnBackground(painter);
  }
  QLineEdit::paintEvent(event);
}

void GlassField::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) applyColors();
}

void GlassField::applyColors() {
  QPalette colors = palette();
  const QColor text = VantorelTheme::label(colors);
  const QColor placeholder = VantorelTheme::secondaryLabel(colors);
  colors.setColor(QPalette::Base, Qt::transparent);
  colors.setColor(QPalette::Text, text);
  colors.setColor(QPalette::PlaceholderText, placeholder);
  VantorelTheme::setSelectionColors(colors);
  if (colors != palette()) setPalette(colors);
}

}  // namespace vantorel
